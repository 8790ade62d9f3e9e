#pragma once

#include "app/windows/video_list.h"
#include "widgets/theme.h"

#include <QWidget>

#include <functional>
#include <vector>

class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
class QUrl;

namespace tonvex {

/// The video tutorials by category, the description of the chosen one, and a button that opens it in the
/// player of the desktop. Interface thread.
class Video_Pane final : public QWidget {
    Q_OBJECT
public:
    Video_Pane(const Theme& theme, std::vector<Video> videos, QWidget* parent = nullptr);
    /// Opens a film; false when nothing can. The desktop's own way unless a test sets another.
    std::function<bool(const QUrl& film)> opener;

signals:
    /// The user has to know: there is no film, or nothing opens it.
    void failed(const QString& text);

private:
    const Video* Chosen() const;
    void Show_Chosen();
    void Open();

    std::vector<Video> videos;
    QTreeWidget* list;
    QLabel* description;
    QPushButton* open;
};

} // namespace tonvex
