#pragma once

#include <QString>

#include <filesystem>
#include <vector>

namespace tonvex {

/// A video tutorial: what its XML file tells, and the film beside it.
struct Video {
    QString title;
    QString description;
    QString category;
    int index = 0;              ///< place within its category
    std::filesystem::path film; ///< the file of the same name with another ending; empty when there is none
};

/// Every *.xml of the folders with a title, by category, then index, then title. The keys title, description,
/// category and index are elements anywhere below the root, or attributes of it, letter case aside. A file
/// that is no XML, has no title or is longer than a megabyte is left out, as is what stands behind the first
/// 1000.
std::vector<Video> Find_Videos(const std::vector<std::filesystem::path>& folders);

} // namespace tonvex
