#include "app/windows/frm_key_access.h"

#include "platform/qt/core_words.h"
#include "platform/qt/virtual_keys.h"

#include <QApplication>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace tonvex {

namespace {

constexpr const char* HELP_PAGE = "window-keyboard access";
constexpr int LONGEST_NAME = 100;
enum Column : int { NAME_COLUMN, KEY_COLUMN };

bool Is_Modifier(int key) {
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_Meta ||
           key == Qt::Key_AltGr;
}

/// The program's own names in the user's language; a name that the user gave as it is.
QString Shown_Name(const FunctionKey& function) {
    return function.Name == function.InternalName ? Core_Words(function.Name)
                                                  : QString::fromStdString(function.Name);
}

} // namespace

frmKeyAccess::frmKeyAccess(Session& owner, const Theme& theme, QWidget* parent)
    : QDialog(parent), session(owner) {
    setWindowTitle(tr("Keyboard Access"));
    setObjectName(QStringLiteral("frmKeyAccess"));
    Make_Controls(theme);
    Fill_List();
    List1->setCurrentItem(List1->topLevelItem(0));
    Text2->setFocus();
}

QPushButton* frmKeyAccess::Make_Button(const char* name, const QString& text, const QString& tip) {
    auto* button = new QPushButton(text, this);
    button->setObjectName(QLatin1String(name));
    button->setToolTip(tip);
    button->setAutoDefault(false);
    return button;
}

void frmKeyAccess::Make_Controls(const Theme& theme) {
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(theme.Px(20), theme.Px(20), theme.Px(20), theme.Px(20));
    all->setSpacing(theme.Px(12));
    const auto field = [this](const char* name, const QString& told, bool written) {
        auto* line = new QLineEdit(this);
        line->setObjectName(QLatin1String(name));
        line->setAccessibleName(told);
        line->setReadOnly(!written);
        return line;
    };
    Text2 = field("Text2", tr("Search Box"), true);
    Text2->setClearButtonEnabled(true);
    Text2->setToolTip(tr("Shows the functions whose names hold this text"));
    List1 = new QTreeWidget(this);
    // Rows are measured when the first one comes.
    List1->ensurePolished();
    List1->setObjectName(QStringLiteral("List1"));
    List1->setAccessibleName(tr("Functions list"));
    List1->setHeaderLabels({tr("Function"), tr("Key")});
    List1->setRootIsDecorated(false);
    List1->setUniformRowHeights(true);
    List1->setMinimumSize(theme.Px(460), theme.Px(96));
    List1->header()->setStretchLastSection(false);
    List1->header()->setSectionResizeMode(NAME_COLUMN, QHeaderView::Stretch);
    List1->header()->setSectionResizeMode(KEY_COLUMN, QHeaderView::ResizeToContents);
    auto* listLabel = new QLabel(tr("&Functions list"), this);
    listLabel->setBuddy(List1);
    Text1 = field("Text1", tr("Key of the function"), false);
    Text3 = field("Text3", tr("Internal name (for reference only)"), false);
    Command1 =
        Make_Button("Command1", tr("&Assign Key"), tr("The next key that is pressed runs the function"));
    Command1->setCheckable(true);
    Command2 = Make_Button("Command2", tr("&Change Function's Name"), tr("Another name for the list"));
    Command3 = Make_Button("Command3", tr("&Run function"), tr("Does what the key of the function does"));
    Command4 = Make_Button("Command4", tr("&Help"), tr("About this window"));
    auto* close = Make_Button("close", tr("C&lose"), tr("Keys are kept as they are shown"));
    Command3->setDefault(true);
    hint = new QLabel(this);
    hint->setWordWrap(true);

    auto* search = new QFormLayout;
    search->addRow(tr("&Search Box"), Text2);
    auto* details = new QFormLayout;
    auto* key = new QHBoxLayout;
    key->addWidget(Text1, 1);
    key->addWidget(Command1);
    details->addRow(tr("Key"), key);
    auto* internal = new QHBoxLayout;
    internal->addWidget(Text3, 1);
    internal->addWidget(Command2);
    details->addRow(tr("Internal name (for reference only)"), internal);
    details->setRowWrapPolicy(QFormLayout::WrapAllRows);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(theme.Px(8));
    buttons->addWidget(Command4);
    buttons->addStretch(1);
    buttons->addWidget(close);
    buttons->addWidget(Command3);
    all->addLayout(search);
    all->addWidget(listLabel);
    all->addWidget(List1, 1);
    all->addLayout(details);
    all->addWidget(hint);
    all->addLayout(buttons);
    resize(QSize(theme.Px(540), theme.Px(640)).boundedTo(screen()->availableSize()));

    connect(Text2, &QLineEdit::textChanged, this, &frmKeyAccess::Fill_List);
    connect(List1, &QTreeWidget::currentItemChanged, this, &frmKeyAccess::Show_Selected);
    connect(Command1, &QPushButton::clicked, this, &frmKeyAccess::Command1_Click);
    connect(Command2, &QPushButton::clicked, this, &frmKeyAccess::Command2_Click);
    connect(Command3, &QPushButton::clicked, this, &frmKeyAccess::Command3_Click);
    connect(Command4, &QPushButton::clicked, this,
            [this] { emit helpAsked(QString::fromLatin1(HELP_PAGE)); });
    connect(close, &QPushButton::clicked, this, &QDialog::close);
}

int frmKeyAccess::Selected_Row() const {
    const int place = List1->indexOfTopLevelItem(List1->currentItem());
    return place < 0 ? -1 : rowOfPlace[static_cast<std::size_t>(place)];
}

void frmKeyAccess::Fill_List() {
    const int before = Selected_Row();
    const QString wanted = Text2->text();
    const Function_Key_Table& table = session.functionKeys;
    // Rows go and come one by one, and a place means nothing until all are there.
    const QSignalBlocker quiet(List1);
    List1->clear();
    rowOfPlace.clear();
    for (int row = 0; row < static_cast<int>(Function_Key_Table::ROWS); ++row) {
        const FunctionKey& function = table.FunctionKeys[static_cast<std::size_t>(row)];
        const QString name = Shown_Name(function);
        if (function.InternalName.empty() || !name.contains(wanted, Qt::CaseInsensitive))
            continue;
        rowOfPlace.push_back(row);
        auto* item = new QTreeWidgetItem(List1, {name, Core_Words(table.Key_Text(row))});
        if (row == before)
            List1->setCurrentItem(item);
    }
    if (List1->currentItem() == nullptr && List1->topLevelItemCount() > 0)
        List1->setCurrentItem(List1->topLevelItem(0));
    Show_Selected();
}

void frmKeyAccess::Show_Selected() {
    const int row = Selected_Row();
    for (QPushButton* button : {Command1, Command2, Command3})
        button->setEnabled(row >= 0);
    Arm(false);
    if (row < 0) {
        Text1->clear();
        Text3->clear();
        hint->setText(tr("No function's name holds the searched text."));
        return;
    }
    const FunctionKey& function = session.functionKeys.FunctionKeys[static_cast<std::size_t>(row)];
    Text1->setText(Core_Words(session.functionKeys.Key_Text(row)));
    Text3->setText(QString::fromStdString(function.InternalName));
    hint->setText(function.WhileRunning != 0 ? tr("Works while the song is recorded or played too.")
                                             : tr("Waits until recording or playing has stopped."));
}

void frmKeyAccess::Tell(const char* text) {
    session.doors.dialogs.Show_Message(Box_Kind::Information, text);
}

// ---- assigning a key ----

void frmKeyAccess::Command1_Click() {
    const int row = Selected_Row();
    Command1->setChecked(armed);
    if (row < 0 || armed) {
        Arm(false);
        return;
    }
    if (session.functionKeys.FunctionKeys[static_cast<std::size_t>(row)].Locked != 0) {
        Tell("This function key is locked and can't be changed");
        return;
    }
    Arm(true);
}

void frmKeyAccess::Arm(bool on) {
    if (on == armed)
        return;
    armed = on;
    Command1->setChecked(on);
    if (on) {
        hint->setText(tr("Press the new key, or Escape to leave the key as it is."));
        // Before the focus, the shortcuts and the playing keys have it.
        qApp->installEventFilter(this);
    } else {
        qApp->removeEventFilter(this);
    }
}

void frmKeyAccess::hideEvent(QHideEvent* event) {
    Arm(false);
    QDialog::hideEvent(event);
}

bool frmKeyAccess::eventFilter(QObject* watched, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease ||
                       event->type() == QEvent::ShortcutOverride;
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (!armed || !isKey || widget == nullptr || widget->window() != this)
        return QDialog::eventFilter(watched, event);
    auto& key = static_cast<QKeyEvent&>(*event);
    key.accept();
    if (event->type() == QEvent::KeyPress && !key.isAutoRepeat() && !Is_Modifier(key.key()))
        Take_Key(Virtual_Key_Of(key), Shift_Mask_Of(key));
    return true;
}

void frmKeyAccess::Take_Key(int keyCode, int shiftMask) {
    if (keyCode == KEYCODE_ESCAPE) {
        Arm(false);
        Show_Selected();
        Tell("Assign key canceled");
        return;
    }
    const int row = Selected_Row();
    switch (session.functionKeys.Use_Of_Key(row, keyCode, shiftMask)) {
    case Function_Key_Table::Key_Use::Reserved:
        Tell("Can't set new key (key is reserved for a special function)\r\nPlease select another key");
        return;
    case Function_Key_Table::Key_Use::Unsupported:
        Tell("Key not supported, please select another key");
        return;
    case Function_Key_Table::Key_Use::Used:
        if (!session.doors.dialogs.Ask_YesNo("Key already used, replace ?")) {
            Arm(false);
            Show_Selected();
            return;
        }
        break;
    default:
        break;
    }
    const bool assigned = session.functionKeys.Assign_Key(row, keyCode, shiftMask);
    Fill_List();
    Arm(false);
    if (!assigned)
        return;
    emit keysChanged();
    Tell("Key assigned");
}

// ---- the other buttons ----

void frmKeyAccess::Command2_Click() {
    const int row = Selected_Row();
    if (row < 0)
        return;
    const FunctionKey& function = session.functionKeys.FunctionKeys[static_cast<std::size_t>(row)];
    auto* question = new QInputDialog(this);
    question->setObjectName(QStringLiteral("newName"));
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setWindowTitle(tr("Change name"));
    question->setLabelText(tr("Type the new name for: ") + QString::fromStdString(function.InternalName));
    question->setTextValue(Shown_Name(function));
    if (auto* line = question->findChild<QLineEdit*>())
        line->setMaxLength(LONGEST_NAME);
    connect(question, &QInputDialog::textValueSelected, this,
            [this, row](const QString& typed) { Take_New_Name(row, typed); });
    question->open();
}

void frmKeyAccess::Take_New_Name(int row, const QString& typed) {
    // The name that was shown is no new one, though it is another than the English one.
    if (typed == Shown_Name(session.functionKeys.FunctionKeys[static_cast<std::size_t>(row)]) ||
        !session.functionKeys.Rename(row, typed.toStdString()))
        return;
    Fill_List();
    emit keysChanged();
}

void frmKeyAccess::Command3_Click() {
    const int row = Selected_Row();
    if (row < 0)
        return;
    Function_Key_Runner& runner = session.keyRunner;
    const FunctionKey& function = session.functionKeys.FunctionKeys[static_cast<std::size_t>(row)];
    runner.PendingKey = function.KeyCode;
    runner.PendingShift = function.Modifier;
    runner.PendingFunction = row;
    runner.FunctionKey_Run(runner.PendingKey, runner.PendingShift, runner.PendingFunction);
    runner.PendingKey = 0;
    runner.PendingShift = 0;
    runner.PendingFunction = -1;
}

} // namespace tonvex
