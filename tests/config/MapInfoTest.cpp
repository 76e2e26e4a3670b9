#include "config/clsMapInfo.h"
#include "support/Test.h"

namespace {

TEST(MapInfo, ListsMapsUpToTheFirstLineThatIsNone) {
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"a.map,312,392\r\n\r\n   \r\nb c.gat, 10 ,20x,99,z\r\n", "a 312 392;b c 10 20;"},
        {"a.map,2.5,\n", "a 2 0;"},
        {"a.map,1,2\nb.map,3\nc.map,5,6\n", "a 1 2;"},
        {"a.map,1,2\nmap,3,4\n", "a 1 2;"},
        {"a.map,1,2\nb.map,32768,4\nc.map,5,6\n", "a 1 2;"},
        {"a.map,1,99999999999999999999\n", ""},
        {std::string("\0\xff,\r\n", 5), ""},
    };
    const support::TempFolder folder;
    for (const auto& [text, maps] : cases) {
        clsMapInfo info;
        info.MapInfoPath(folder.Path() + "\\");
        std::string list;
        info.ReturnMapList = [&](const std::string& name, std::int16_t x, std::int16_t y) {
            list += name + " " + std::to_string(x) + " " + std::to_string(y) + ";";
        };
        support::WriteFile(folder / info.MapInfoFilename(), text);
        info.GetMapList();
        EXPECT_EQ(list, maps) << text;
    }
}

TEST(MapInfo, NamingAMapSetsItsHighestCells) {
    const support::TempFolder folder;
    support::WriteFile(
        folder / "Sizes.txt",
        "town.map,312,392\r\nTown.map,5,6\r\ntown.map,1,1\r\nhuge.map,40000,5\r\nshort.map,9\r\nabc");
    clsMapInfo info;
    info.MapInfoPath(folder.Path() + "\\");
    info.MapName("town");
    EXPECT_EQ(info.GetMaxX(), 0) << "no file";
    info.MapInfoFilename("Sizes.txt");
    for (const auto& [name, cells] : {std::pair{"town", std::pair{311, 391}},
                                      {"unknown", {311, 391}},
                                      {"Town", {4, 5}},
                                      {"huge", {4, 5}},
                                      {"short", {4, 5}}}) {
        info.MapName(name);
        EXPECT_EQ((std::pair<int, int>(info.GetMaxX(), info.GetMaxY())), cells) << name;
    }
}

} // namespace
