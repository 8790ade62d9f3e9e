#include "app/windows/frm_help.h"

#include "widgets/help_view.h"
#include "widgets/tool_button.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>

namespace tonvex {

namespace {

constexpr const char* FIRST_PAGE = "intro";
constexpr int WIDTH = 900;
constexpr int HEIGHT = 640;
constexpr int CONTENTS_WIDTH = 250;
constexpr int GAP = 16;

} // namespace

frmHelp::frmHelp(const Theme& look, const std::filesystem::path& helpFolder)
    : QWidget(nullptr), theme(look), pages(Load_Help_Pages(helpFolder)) {
    setObjectName(QStringLiteral("frmHelp"));
    setWindowTitle(tr("Help - Tonvex"));
    // The program ends with its main window.
    setAttribute(Qt::WA_QuitOnClose, false);

    auto* left = new QWidget(this);
    search = new QLineEdit(left);
    search->setObjectName(QStringLiteral("search"));
    search->setAccessibleName(tr("Search the help"));
    search->setToolTip(tr("Search the help (Ctrl+F)"));
    search->setPlaceholderText(tr("Search"));
    search->setClearButtonEnabled(true);
    contents = new QListWidget(left);
    contents->setObjectName(QStringLiteral("contents"));
    contents->setAccessibleName(tr("Contents"));
    contents->setToolTip(tr("The pages of the help"));
    auto* leftColumn = new QVBoxLayout(left);
    leftColumn->setContentsMargins(theme.Px(12), theme.Px(12), theme.Px(8), theme.Px(12));
    leftColumn->setSpacing(theme.Px(8));
    leftColumn->addWidget(search);
    leftColumn->addWidget(contents, 1);

    auto* right = new QWidget(this);
    view = new Help_View(theme, helpFolder, right);
    const auto button = [this, right](const char* picture, const QString& name, const QString& key) {
        return new Tool_Button(theme, Button_Kind::Flat, QLatin1String(picture), name, key, right);
    };
    auto* back = button("page-back", tr("Back"), tr("Alt+Left"));
    back->setObjectName(QStringLiteral("back"));
    auto* forward = button("page-forward", tr("Forward"), tr("Alt+Right"));
    forward->setObjectName(QStringLiteral("forward"));
    auto* home = button("home", tr("First steps"), tr("Alt+Home"));
    home->setObjectName(QStringLiteral("home"));
    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(theme.Px(8), theme.Px(8), theme.Px(8), theme.Px(4));
    for (Tool_Button* each : {back, forward, home})
        bar->addWidget(each);
    bar->addStretch(1);
    onStart = new QCheckBox(tr("&Show help on start up"), right);
    onStart->setObjectName(QStringLiteral("onStart"));
    onStart->setToolTip(tr("Open the first steps each time that Tonvex starts"));
    auto* close = new QPushButton(tr("Close"), right);
    close->setToolTip(tr("Close the help (Esc)"));
    auto* foot = new QHBoxLayout;
    foot->setContentsMargins(theme.Px(16), theme.Px(8), theme.Px(16), theme.Px(12));
    foot->addWidget(onStart);
    foot->addStretch(1);
    foot->addWidget(close);
    auto* rightColumn = new QVBoxLayout(right);
    rightColumn->setContentsMargins(0, 0, 0, 0);
    rightColumn->setSpacing(0);
    rightColumn->addLayout(bar);
    rightColumn->addWidget(view, 1);
    rightColumn->addLayout(foot);

    auto* halves = new QSplitter(Qt::Horizontal, this);
    halves->addWidget(left);
    halves->addWidget(right);
    halves->setStretchFactor(1, 1);
    halves->setSizes({theme.Px(CONTENTS_WIDTH), theme.Px(WIDTH - CONTENTS_WIDTH)});
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->addWidget(halves);
    // At the right of the screen, where it covers least of what a page speaks of.
    const QRect room = screen()->availableGeometry();
    resize(std::min(theme.Px(WIDTH), room.width()), std::min(theme.Px(HEIGHT), room.height()));
    move(room.right() - width() - theme.Px(GAP), room.top() + room.height() / 6);

    back->setEnabled(false);
    forward->setEnabled(false);
    connect(back, &QToolButton::clicked, view, &QTextBrowser::backward);
    connect(forward, &QToolButton::clicked, view, &QTextBrowser::forward);
    connect(home, &QToolButton::clicked, this, [this] { view->Show_Page(QLatin1String(FIRST_PAGE)); });
    connect(view, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
    connect(view, &QTextBrowser::forwardAvailable, forward, &QWidget::setEnabled);
    // Of the two notices of a new page the one that comes when source() tells it.
    connect(view, &QTextBrowser::historyChanged, this, &frmHelp::Show_Place);
    connect(view, &Help_View::actionAsked, this, &frmHelp::actionAsked);
    connect(search, &QLineEdit::textChanged, this, &frmHelp::Fill);
    connect(search, &QLineEdit::returnPressed, contents, qOverload<>(&QWidget::setFocus));
    connect(contents, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem* item) {
        if (item != nullptr && item->data(Qt::UserRole).toString() != view->Page())
            view->Show_Page(item->data(Qt::UserRole).toString());
        Mark_Words();
    });
    connect(onStart, &QCheckBox::toggled, this, &frmHelp::shownOnStartChanged);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    Fill({});
}

void frmHelp::Show_Page(const QString& page) {
    search->clear();
    view->Show_Page(page.isEmpty() ? QLatin1String(FIRST_PAGE) : page);
    show();
    raise();
    activateWindow();
    view->setFocus();
}

void frmHelp::Set_Shown_On_Start(bool on) {
    onStart->setChecked(on);
}

void frmHelp::Fill(const QString& query) {
    const QSignalBlocker quiet(contents);
    contents->clear();
    for (const std::size_t place : Search_Help(pages, query)) {
        auto* item = new QListWidgetItem(pages[place].title, contents);
        item->setData(Qt::UserRole, pages[place].name);
    }
    Show_Place();
    Mark_Words();
}

/// The contents follow the page.
void frmHelp::Show_Place() {
    const QSignalBlocker quiet(contents);
    contents->setCurrentItem(nullptr);
    for (int row = 0; row < contents->count(); ++row)
        if (contents->item(row)->data(Qt::UserRole).toString() == view->Page())
            contents->setCurrentRow(row);
    setWindowTitle(contents->currentItem() != nullptr
                       ? tr("%1 - Help - Tonvex").arg(contents->currentItem()->text())
                       : tr("Help - Tonvex"));
}

/// What is searched for is marked on the page.
void frmHelp::Mark_Words() {
    QList<QTextEdit::ExtraSelection> marks;
    for (const QString& word : search->text().split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        QTextCursor at(view->document());
        while (!(at = view->document()->find(word, at)).isNull()) {
            QTextEdit::ExtraSelection mark;
            mark.cursor = at;
            mark.format.setBackground(theme.Tokens().accent);
            mark.format.setForeground(theme.Tokens().onAccent);
            marks << mark;
        }
    }
    view->setExtraSelections(marks);
}

void frmHelp::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else if (event->matches(QKeySequence::Find))
        search->setFocus();
    else if (event->matches(QKeySequence::Back))
        view->backward();
    else if (event->matches(QKeySequence::Forward))
        view->forward();
    else if (event->key() == Qt::Key_Home && event->modifiers() == Qt::AltModifier)
        view->Show_Page(QLatin1String(FIRST_PAGE));
    else
        QWidget::keyPressEvent(event);
}

} // namespace tonvex
