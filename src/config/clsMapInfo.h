#pragma once

#include "common/Property.h"

#include <cstdint>
#include <functional>
#include <string>

/// The table of known maps and their sizes: a text file of lines "<name>.<ext>,<width>,<height>", which is
/// read afresh at each use. A missing or unreadable file has no maps; a line that cannot be understood ends
/// the reading there, without a message.
class clsMapInfo {
public:
    /// Folder of the file, with its trailing backslash.
    common::Property<std::string> MapInfoPath;
    common::Property<std::string> MapInfoFilename{"MapInfo.txt"};

    const std::string& MapName() const { return mapName_; }
    /// Makes it the current map and looks it up.
    void MapName(const std::string& name);

    /// Highest cell coordinates of the current map; 0 until a map has been found.
    common::Property<std::int16_t> GetMaxX;
    common::Property<std::int16_t> GetMaxY;

    /// Sets the maxima from the first line of the current map. A map that is not in the file, or whose size
    /// does not fit, leaves them as they are.
    void UpdateMapInfo();

    /// Raises ReturnMapList for each map in the order of the file.
    void GetMapList();

    /// Name, width and height of one map: its sizes, not its highest coordinates.
    std::function<void(const std::string& mapName, std::int16_t maxX, std::int16_t maxY)> ReturnMapList;

private:
    std::string mapName_;
};
