#pragma once

#include "app/windows/help_pages.h"
#include "widgets/theme.h"

#include <QWidget>

#include <filesystem>
#include <vector>

class QCheckBox;
class QLineEdit;
class QListWidget;

namespace tonvex {

class Help_View;

/// The help: contents with a search at the left, the page at the right. A window of its own without a parent,
/// so that it can be read while a dialog of the program is open. Interface thread. The theme outlives it.
class frmHelp final : public QWidget {
    Q_OBJECT
public:
    frmHelp(const Theme& theme, const std::filesystem::path& helpFolder);
    /// Shows the page and comes to the front.
    void Show_Page(const QString& page);
    /// The mark "Show help on start up" as the settings have it.
    void Set_Shown_On_Start(bool on);
    Help_View& View() { return *view; }

signals:
    void actionAsked(const QString& action);
    void shownOnStartChanged(bool on);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Fill(const QString& query);
    void Show_Place();
    void Mark_Words();

    const Theme& theme;
    std::vector<Help_Page> pages;
    QLineEdit* search = nullptr;
    QListWidget* contents = nullptr;
    Help_View* view = nullptr;
    QCheckBox* onStart = nullptr;
};

} // namespace tonvex
