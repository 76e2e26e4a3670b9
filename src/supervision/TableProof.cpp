#include "supervision/TableProof.h"

namespace supervision {

namespace {

/// A number in the order of bytes that MyISAM stores: the highest first.
std::uint64_t Number(std::string_view bytes) {
    std::uint64_t number = 0;
    for (const char byte : bytes)
        number = number << 8 | static_cast<unsigned char>(byte);
    return number;
}

TableVerdict Damaged(std::string reason) {
    return {Verdict::Unreadable, 0, std::move(reason)};
}

} // namespace

std::optional<TableState> ReadTableState(std::string_view start) {
    using namespace std::string_view_literals;
    constexpr std::uint64_t kDelayKeyWrite = 64;
    constexpr std::uint64_t kCrashed = 2 | 4; // the second one: while it was being repaired
    if (start.size() < kTableStateBytes || !start.starts_with("\xFE\xFE\x07"sv))
        return {};
    // A header of 24 bytes, and then the state, which the server rewrites behind each change.
    return TableState{.rows = Number(start.substr(28, 8)),
                      .indexBytes = Number(start.substr(60, 8)),
                      .dataBytes = Number(start.substr(68, 8)),
                      .crashed = (Number(start.substr(26, 1)) & kCrashed) != 0,
                      .delayedKeys = (Number(start.substr(4, 2)) & kDelayKeyWrite) != 0};
}

TableVerdict VerdictOn(const TableEvidence& evidence) {
    using namespace std::string_view_literals;
    const auto state = ReadTableState(evidence.indexStart);
    if (!evidence.layoutStart.starts_with("\xFE\x01"sv))
        return Damaged("its layout file is none");
    if (!state)
        return Damaged("its index file is none");
    if (state->crashed)
        return Damaged("MySQL has marked it as crashed");
    if (!evidence.same)
        return {Verdict::Changed, state->rows, "MySQL wrote to it meanwhile"};
    if (evidence.dataBytes < state->dataBytes)
        return Damaged("rows are missing at the end of its data file");
    if (evidence.indexBytes < state->indexBytes && !state->delayedKeys)
        return Damaged("the end of its index file is missing");
    if (evidence.dataBytes != state->dataBytes || evidence.indexBytes != state->indexBytes)
        return {Verdict::Changed, state->rows, "MySQL has not yet written its state"};
    return {Verdict::Proven, state->rows, {}};
}

} // namespace supervision
