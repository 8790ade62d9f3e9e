// The tool bar of the events editor.

#include "editors/windows/events_editor_ctrl.h"

#include "platform/qt/core_words.h"
#include "widgets/overflow_bar.h"
#include "widgets/tool_button.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>

namespace tonvex {

namespace {

constexpr int STRENGTHS[] = {100, 75, 50, 25};

/// A hair line between groups of buttons.
QWidget* Make_Gap(const Theme& theme, QWidget* parent) {
    auto* gap = new QWidget(parent);
    gap->setFixedWidth(theme.Px(4));
    return gap;
}

} // namespace

Tool_Button* EventsEditorCtrl::Add_Button(const QString& picture, const QString& name, const QString& key,
                                          const std::function<void()>& act) {
    auto* button = new Tool_Button(theme, Button_Kind::Flat, picture, name, key, CoolToolBar1);
    button->setObjectName(picture);
    // Behind a click the keys are the roll's: Copy clicked, Ctrl+V works. Who came by Tab stays. Before the
    // act, for a run takes its time.
    button->setFocusPolicy(Qt::TabFocus);
    connect(button, &QToolButton::clicked, this, [this, button, act] {
        if (!button->hasFocus())
            view->setFocus();
        act();
    });
    CoolToolBar1->layout()->addWidget(button);
    return button;
}

Tool_Button* EventsEditorCtrl::Add_Tool(const QString& picture, const QString& name, Roll_Tool tool) {
    Tool_Button* button = Add_Button(picture, name, {}, [this, tool] {
        view->Set_Tool(tool);
        Show_Tool();
        view->setFocus();
    });
    button->setCheckable(true);
    const auto row = static_cast<std::size_t>(tool);
    if (toolButtons.size() <= row)
        toolButtons.resize(row + 1, nullptr);
    toolButtons[row] = button;
    return button;
}

void EventsEditorCtrl::Make_Bar() {
    auto* bar = new Overflow_Bar(theme, this);
    CoolToolBar1 = bar;
    CoolToolBar1->setObjectName(QStringLiteral("CoolToolBar1"));
    QHBoxLayout* row = bar->Row();
    row->setContentsMargins(theme.Px(8), theme.Px(6), theme.Px(8), theme.Px(6));
    row->setSpacing(theme.Px(2));
    const auto gap = [&] { row->addWidget(Make_Gap(theme, CoolToolBar1)); };

    Add_Tool(QStringLiteral("pointer"), tr("Select, move and stretch events"), Roll_Tool::Select);
    Add_Tool(QStringLiteral("pencil"), tr("Draw notes"), Roll_Tool::Draw);
    Add_Tool(QStringLiteral("eraser"), tr("Erase events"), Roll_Tool::Erase);
    gap();
    Add_Button(QStringLiteral("plus"), tr("Add note at the place clicked next"), tr("Ins at the cursor"),
               [this] { Add_Note_At_Next_Click(); });
    Add_Tool(QStringLiteral("chord"), tr("Add chord at the place clicked next"), Roll_Tool::Chord)
        ->Set_Name(tr("Add chord at the place clicked next"), tr("Alt+Ins at the cursor"));
    gap();
    needSelection.push_back(Add_Button(QStringLiteral("sliders"), tr("Properties of the selection"),
                                       tr("Alt+Enter"), [this] { Open_Properties(); }));
    needSelection.push_back(
        Add_Button(QStringLiteral("cut"), tr("Cut"), tr("Ctrl+X"), [this] { Run(Roll_Command::Cut); }));
    needSelection.push_back(
        Add_Button(QStringLiteral("copy"), tr("Copy"), tr("Ctrl+C"), [this] { Run(Roll_Command::Copy); }));
    Add_Button(QStringLiteral("paste"), tr("Paste at the play position"), tr("Ctrl+V"),
               [this] { Run(Roll_Command::Paste); });
    needSelection.push_back(
        Add_Button(QStringLiteral("trash"), tr("Delete"), tr("Del"), [this] { Run(Roll_Command::Delete); }));
    gap();
    Add_Button(QStringLiteral("play"), tr("Play song"), tr("Enter"), [this] { emit playWanted(); });
    Add_Button(QStringLiteral("stop"), tr("Stop recording/playing"), tr("Esc"),
               [this] { emit stopWanted(); });
    Add_Button(QStringLiteral("record"), tr("Record"), tr("Ctrl+R"), [this] {
        emit recordWanted();
    })->Set_Tint(Icon_Tint::Record);
    gap();
    undoButton = Add_Button(QStringLiteral("undo"), tr("Undo"), tr("Ctrl+Z"),
                            [this] { (void)session.undo->Do_Undo(); });
    redoButton = Add_Button(QStringLiteral("redo"), tr("Redo"), tr("Ctrl+Shift+Z"),
                            [this] { (void)session.undo->Do_Redo(); });
    gap();
    copyModeButton =
        Add_Button(QStringLiteral("copy-mode"), tr("Copy mode: a drag leaves a copy"),
                   tr("Ctrl while dragging"), [this] { Set_Copy_Mode(copyModeButton->isChecked()); });
    copyModeButton->setCheckable(true);
    gap();
    alignButton =
        Add_Button(QStringLiteral("magnet"), tr("Snap to the grid"), tr("Shift while dragging: off the grid"),
                   [this] { Set_Align(alignButton->isChecked()); });
    alignButton->setCheckable(true);
    gridButton = new Tool_Button(theme, Button_Kind::Pill, {}, tr("Grid"), {}, CoolToolBar1);
    gridButton->setObjectName(QStringLiteral("grid"));
    gridButton->setFocusPolicy(Qt::TabFocus);
    gridButton->setPopupMode(QToolButton::InstantPopup);
    auto* grids = new QMenu(gridButton);
    Fill_Grid_Menu(grids);
    gridButton->setMenu(grids);
    row->addWidget(gridButton);
    gap();
    Combo2 = new QComboBox(CoolToolBar1);
    Combo2->setObjectName(QStringLiteral("Combo2"));
    Combo2->setAccessibleName(tr("Marks"));
    Combo2->setToolTip(tr("Go to a mark"));
    Combo2->setFocusPolicy(Qt::TabFocus);
    // As wide as its title; the list opens as wide as its names.
    Combo2->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    Combo2->setMinimumContentsLength(5);
    connect(Combo2, &QComboBox::activated, this, [this](int at) {
        const int mark = Combo2->itemData(at).toInt();
        Combo2->setCurrentIndex(0);
        if (mark >= 0 && session.marks.Is_Live(mark))
            emit goTo(session.marks.Row(mark).MarkStart);
    });
    row->addWidget(Combo2);
    row->addSpacing(theme.Px(6));
    Label4 = new QLabel(tr("Copy Mode"), CoolToolBar1);
    Label4->setObjectName(QStringLiteral("Label4"));
    Label4->hide();
    row->addWidget(Label4);
    status = new QLabel(CoolToolBar1);
    status->setObjectName(QStringLiteral("status"));
    status->setProperty("dim", true);
    status->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    status->setAccessibleName(tr("Selection"));
    status->installEventFilter(this);
    row->addWidget(status, 1);
    Add_Button(QStringLiteral("layers"), tr("Show other channels"), {}, [this] { CView_ShowSelChannels(); });
    Add_Button(QStringLiteral("eye"), tr("View"), {}, [this] { Open_View(); });
    Add_Button(QStringLiteral("help"), tr("Help"), {},
               [this] { emit helpWanted(QStringLiteral("window-events editor")); });
    row->addSpacing(theme.Px(4));
    zoomButton = new Tool_Button(theme, Button_Kind::Pill, {}, tr("Zoom"), tr("Ctrl+wheel"), CoolToolBar1);
    zoomButton->setObjectName(QStringLiteral("zoom"));
    zoomButton->setFocusPolicy(Qt::TabFocus);
    zoomButton->setPopupMode(QToolButton::InstantPopup);
    zoomButton->Reserve_For(QStringLiteral("2000 %"));
    auto* zooms = new QMenu(zoomButton);
    Fill_Zoom_Menu(zooms);
    zoomButton->setMenu(zooms);
    row->addWidget(zoomButton);
    // What keys and menus do as well goes first; what draws stays.
    for (const char* name :
         {"help",  "record", "stop", "play",  "redo",    "undo", "Combo2", "layers", "eye",   "copy-mode",
          "paste", "copy",   "cut",  "trash", "sliders", "zoom", "magnet", "grid",   "chord", "plus"})
        bar->Let_Go(CoolToolBar1->findChild<QWidget*>(QLatin1String(name)));
    const auto takeTheme = [this, row] {
        row->setContentsMargins(theme.Px(8), theme.Px(6), theme.Px(8), theme.Px(6));
        status->setFont(theme.Font(Text_Size::Caption));
        Label4->setFont(theme.Font(Text_Size::Caption, QFont::DemiBold));
    };
    connect(&theme, &Theme::Changed, this, takeTheme);
    takeTheme();
}

void EventsEditorCtrl::Fill_Grid_Menu(QMenu* menu) {
    for (const Grid_Choice& choice : GRID_CHOICES) {
        QAction* action = menu->addAction(Core_Words(choice.Text), this, [this, div = choice.Div] {
            Set_Grid(div);
            view->setFocus();
        });
        action->setCheckable(true);
        action->setData(choice.Div);
    }
    menu->addSeparator();
    QMenu* strength = menu->addMenu(tr("Align strength"));
    for (const int percent : STRENGTHS) {
        QAction* action = strength->addAction(tr("%1 %").arg(percent), this,
                                              [this, percent] { Set_Align_Strength(percent); });
        action->setCheckable(true);
        action->setData(percent);
    }
    connect(menu, &QMenu::aboutToShow, this, [this, menu, strength] {
        for (QAction* action : menu->actions())
            action->setChecked(action->data().toInt() == session.editorSetup.AlignDiv);
        for (QAction* action : strength->actions())
            action->setChecked(action->data().toInt() == alignStrength);
    });
}

void EventsEditorCtrl::Fill_Zoom_Menu(QMenu* menu) {
    for (int row = 0; row < ZOOM_ROWS; ++row) {
        QAction* action = menu->addAction(QString::fromLatin1(ZoomTable[static_cast<std::size_t>(row)].Text),
                                          this, [this, row] {
                                              UpdateZoom(row);
                                              view->setFocus();
                                          });
        action->setCheckable(true);
    }
    connect(menu, &QMenu::aboutToShow, this, [this, menu] {
        for (int row = 0; row < ZOOM_ROWS; ++row)
            menu->actions()[row]->setChecked(row == view->Window().Geometry.ZoomIndex);
    });
}

void EventsEditorCtrl::Show_Tool() {
    for (std::size_t tool = 0; tool < toolButtons.size(); ++tool)
        if (toolButtons[tool] != nullptr)
            toolButtons[tool]->setChecked(static_cast<std::size_t>(view->Tool()) == tool);
}

void EventsEditorCtrl::Show_Grid() {
    alignButton->setChecked(view->Gesture().Grid.AlignOn);
    gridButton->Set_Pill({}, Core_Words(Grid_Text(session.editorSetup.AlignDiv)));
    zoomButton->Set_Pill(
        {}, QString::fromLatin1(ZoomTable[static_cast<std::size_t>(view->Window().Geometry.ZoomIndex)].Text));
}

void EventsEditorCtrl::Add_Note_At_Next_Click() {
    view->Set_Tool(Roll_Tool::Draw, true);
    view->setFocus();
}

void EventsEditorCtrl::Add_Chord_At_Next_Click() {
    view->Set_Tool(Roll_Tool::Chord);
    view->setFocus();
}

void EventsEditorCtrl::Set_Copy_Mode(bool on) {
    view->Set_Copy_Mode(on);
    copyModeButton->setChecked(on);
    Label4->setVisible(on);
    on ? CopyModeTimer.start() : CopyModeTimer.stop();
}

} // namespace tonvex
