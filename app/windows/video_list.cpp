#include "app/windows/video_list.h"

#include <QFile>
#include <QXmlStreamReader>

#include <algorithm>
#include <optional>
#include <tuple>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

constexpr qint64 LONGEST_FILE = 1 << 20;
constexpr std::size_t MOST_VIDEOS = 1000;

/// False for a key that is none of the four.
bool Take(Video& video, QStringView key, const QString& value) {
    const QString name = key.toString().toLower();
    if (name == QLatin1String("title"))
        video.title = value.simplified();
    else if (name == QLatin1String("description"))
        video.description = value.trimmed();
    else if (name == QLatin1String("category"))
        video.category = value.simplified();
    else if (name == QLatin1String("index"))
        video.index = value.trimmed().toInt();
    else
        return false;
    return true;
}

bool Is_Key(QStringView key) {
    Video unused;
    return Take(unused, key, {});
}

std::optional<Video> Read(const fs::path& path) {
    QFile file(QString::fromStdString(path.string()));
    if (!file.open(QIODevice::ReadOnly) || file.size() > LONGEST_FILE)
        return std::nullopt;
    Video video;
    QXmlStreamReader reader(&file);
    if (reader.readNextStartElement())
        for (const QXmlStreamAttribute& attribute : reader.attributes())
            Take(video, attribute.name(), attribute.value().toString());
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement || !Is_Key(reader.name()))
            continue;
        const QString key = reader.name().toString();
        Take(video, key, reader.readElementText(QXmlStreamReader::SkipChildElements));
    }
    if (reader.hasError() || video.title.isEmpty())
        return std::nullopt;
    return video;
}

bool Same_Ending(const fs::path& path, const char* ending) {
    return QString::fromStdString(path.extension().string())
               .compare(QLatin1String(ending), Qt::CaseInsensitive) == 0;
}

fs::path Film_Beside(const fs::path& xml) {
    std::error_code error;
    std::vector<fs::path> films;
    for (const fs::directory_entry& entry : fs::directory_iterator(xml.parent_path(), error))
        if (entry.path().stem() == xml.stem() && !Same_Ending(entry.path(), ".xml") &&
            entry.is_regular_file(error))
            films.push_back(entry.path());
    return films.empty() ? fs::path() : *std::min_element(films.begin(), films.end());
}

} // namespace

std::vector<Video> Find_Videos(const std::vector<fs::path>& folders) {
    std::vector<Video> videos;
    for (const fs::path& folder : folders) {
        std::error_code error;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
            if (videos.size() >= MOST_VIDEOS)
                break;
            if (!Same_Ending(entry.path(), ".xml") || !entry.is_regular_file(error))
                continue;
            if (std::optional<Video> video = Read(entry.path())) {
                video->film = Film_Beside(entry.path());
                videos.push_back(std::move(*video));
            }
        }
    }
    std::sort(videos.begin(), videos.end(), [](const Video& a, const Video& b) {
        return std::tie(a.category, a.index, a.title, a.film) <
               std::tie(b.category, b.index, b.title, b.film);
    });
    return videos;
}

} // namespace tonvex
