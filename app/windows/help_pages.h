#pragma once

#include <QString>

#include <filesystem>
#include <vector>

namespace tonvex {

/// A page of the help, by the index file of its folder.
struct Help_Page {
    QString title;
    QString name; ///< of its file, without ending
    QString text; ///< its words without markup, for the search
};

/// The pages in the order of folder/index.txt: one "title;file" a line, blank lines skipped, a line of
/// another form or without a readable file left out. Empty when the index cannot be read.
std::vector<Help_Page> Load_Help_Pages(const std::filesystem::path& folder);

/// Places in pages of those that hold every word of the query in title or text, letter case aside; a page
/// whose title holds them all comes first. All pages for a blank query.
std::vector<std::size_t> Search_Help(const std::vector<Help_Page>& pages, const QString& query);

} // namespace tonvex
