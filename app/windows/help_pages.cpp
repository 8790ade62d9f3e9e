#include "app/windows/help_pages.h"

#include <QFile>
#include <QStringList>
#include <QTextDocument>

#include <algorithm>

namespace tonvex {

namespace {

constexpr qint64 LONGEST_FILE = 1 << 20;
constexpr const char* ENDING = ".html";

QString Whole_File(const std::filesystem::path& path) {
    QFile file(QString::fromStdString(path.string()));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.read(LONGEST_FILE)) : QString();
}

} // namespace

std::vector<Help_Page> Load_Help_Pages(const std::filesystem::path& folder) {
    std::vector<Help_Page> pages;
    for (const QString& line : Whole_File(folder / "index.txt").split(QLatin1Char('\n'))) {
        const QStringList fields = line.trimmed().split(QLatin1Char(';'));
        if (fields.size() != 2 || !fields[1].endsWith(QLatin1String(ENDING)))
            continue;
        const QString html = Whole_File(folder / fields[1].toStdString());
        if (html.isEmpty())
            continue;
        QTextDocument document;
        document.setHtml(html);
        pages.push_back({fields[0].trimmed(), fields[1].chopped(5), document.toPlainText()});
    }
    return pages;
}

std::vector<std::size_t> Search_Help(const std::vector<Help_Page>& pages, const QString& query) {
    const QStringList words = query.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const auto holds = [&words](const QString& text) {
        return std::all_of(words.begin(), words.end(),
                           [&text](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
    };
    std::vector<std::size_t> found;
    std::vector<std::size_t> byText;
    for (std::size_t i = 0; i < pages.size(); ++i) {
        if (holds(pages[i].title))
            found.push_back(i);
        else if (holds(pages[i].title + QLatin1Char('\n') + pages[i].text))
            byText.push_back(i);
    }
    found.insert(found.end(), byText.begin(), byText.end());
    return found;
}

} // namespace tonvex
