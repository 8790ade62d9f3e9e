#pragma once

#include "widgets/theme.h"

#include <QTextBrowser>

#include <filesystem>

namespace tonvex {

/// Shows the help pages of one folder in the program's own look. Interface thread. The theme outlives it.
/// Nothing outside the folder is shown: a link to another page stays inside, a web address goes to the
/// user's browser, "tonvex:" asks the program to do something, any other link does nothing.
/// Pages may show the program's icons by <img src="icon:record">.
class Help_View final : public QTextBrowser {
    Q_OBJECT
public:
    Help_View(const Theme& theme, std::filesystem::path helpFolder, QWidget* parent = nullptr);
    /// page without ending. False when there is no such page in the folder: the view says so instead.
    bool Show_Page(const QString& page);
    /// Name without ending of what is shown; empty before the first page.
    QString Page() const;

signals:
    /// What stands behind "tonvex:", such as "record" or "play/60-64-67".
    void actionAsked(const QString& action);

protected:
    QVariant loadResource(int type, const QUrl& name) override;
    bool event(QEvent* event) override;

private:
    void Follow(const QUrl& link);
    void Use_Look();
    QString Path_Of(const QString& page) const;

    const Theme& theme;
    std::filesystem::path folder;
};

} // namespace tonvex
