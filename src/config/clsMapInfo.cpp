#include "config/clsMapInfo.h"

#include "common/Files.h"
#include "common/Numbers.h"
#include "common/RuntimeError.h"
#include "common/Text.h"

namespace {

struct MapLine {
    explicit MapLine(std::string_view line) : fields(common::Split(line, ',')) {
        constexpr std::size_t kExtension = 4;
        if (fields[0].size() < kExtension)
            throw RuntimeError(common::kInvalidProcedureCall);
        name = fields[0].substr(0, fields[0].size() - kExtension);
    }

    double Number(std::size_t field) const {
        if (field >= fields.size())
            throw RuntimeError(common::kSubscriptOutOfRange);
        return common::Val(fields[field]);
    }
    double Width() const { return Number(1); }
    double Height() const { return Number(2); }

    std::vector<std::string> fields;
    std::string name;
};

/// Hands the lines of the file to `visit` until it returns false or a line raises an error.
void ForEachMap(const std::string& path, const std::function<bool(const MapLine&)>& visit) {
    if (!common::FileExists(path))
        return;
    try {
        const std::string text = common::ReadFileText(path);
        for (std::string_view rest = text; !rest.empty();) {
            const std::string_view line = common::NextLine(rest).text;
            if (!common::Trim(line).empty() && !visit(MapLine(line)))
                return;
        }
    } catch (const RuntimeError&) {
        // The maps before the damaged line are good; the picker goes on with them.
    }
}

} // namespace

void clsMapInfo::MapName(const std::string& name) {
    mapName_ = name;
    UpdateMapInfo();
}

void clsMapInfo::UpdateMapInfo() {
    ForEachMap(MapInfoPath() + MapInfoFilename(), [&](const MapLine& map) {
        if (map.name != mapName_)
            return true;
        const std::int16_t maxX = common::CInt(map.Width() - 1);
        const std::int16_t maxY = common::CInt(map.Height() - 1);
        GetMaxX(maxX);
        GetMaxY(maxY);
        return false;
    });
}

void clsMapInfo::GetMapList() {
    ForEachMap(MapInfoPath() + MapInfoFilename(), [&](const MapLine& map) {
        const std::int16_t width = common::CInt(map.Width());
        const std::int16_t height = common::CInt(map.Height());
        if (ReturnMapList)
            ReturnMapList(map.name, width, height);
        return true;
    });
}
