#include "song/windows/frm_marks.h"

#include "song/time_text.h"
#include "song/windows/mark_selection.h"
#include "widgets/mark_flags.h"
#include "widgets/tool_button.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace tonvex {

namespace {

constexpr int ROW_ROLE = Qt::UserRole;
enum Column { NAME_COLUMN, START_COLUMN, END_COLUMN };

} // namespace

frmMarks::frmMarks(Session& owner, Theme& look, Mark_Selection& chosen, QWidget* parent)
    : QDialog(parent), session(owner), theme(look), selection(chosen) {
    setWindowTitle(tr("Marks"));
    setObjectName(QStringLiteral("frmMarks"));
    Make_Controls();
    connect(&selection, &Mark_Selection::changed, this, &frmMarks::Show_Selected);
    connect(&theme, &Theme::Changed, this, &frmMarks::Update_View);
    subscription = session.events.Subscribe([this](int msgId, std::int32_t, const std::string&) {
        // Each change of a mark ends in the general update.
        if (msgId == MSG_GENERAL_UPDATE)
            Update_View();
    });
    Update_View();
    list->setFocus();
}

frmMarks::~frmMarks() {
    // A field that has the focus loses it on the way out, and there is nobody left to hear of it.
    name->disconnect(this);
    session.events.Unsubscribe(subscription);
}

Tool_Button* frmMarks::Make_Button(const char* objectName, const QString& picture, const QString& text,
                                   const QString& key, void (Mark_Selection::*act)()) {
    auto* button = new Tool_Button(theme, Button_Kind::Boxed, picture, text, key, this);
    button->setObjectName(QLatin1String(objectName));
    connect(button, &QToolButton::clicked, &selection, act);
    needMark.push_back(button);
    return button;
}

void frmMarks::Make_Controls() {
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(theme.Px(20), theme.Px(20), theme.Px(20), theme.Px(20));
    all->setSpacing(theme.Px(12));
    auto* bar = new QHBoxLayout;
    bar->setSpacing(theme.Px(8));
    addButton = new Tool_Button(theme, Button_Kind::Boxed, QStringLiteral("plus"),
                                tr("Add a mark at the play position"), tr("Ins"), this);
    addButton->setObjectName(QStringLiteral("add"));
    connect(addButton, &QToolButton::clicked, this, &frmMarks::Add);
    bar->addWidget(addButton);
    bar->addWidget(Make_Button("delete", QStringLiteral("trash"), tr("Delete the mark"), tr("Del"),
                               &Mark_Selection::Delete));
    bar->addWidget(Make_Button("goTo", QStringLiteral("play"), tr("Go to the mark"), tr("Enter"),
                               &Mark_Selection::Go_To));
    bar->addWidget(Make_Button("start", QStringLiteral("mark-start"),
                               tr("Set mark start at current play position"), {},
                               &Mark_Selection::Set_Start_At_Play_Position));
    bar->addWidget(Make_Button("end", QStringLiteral("mark-end"), tr("Set mark end at current play position"),
                               {}, &Mark_Selection::Set_End_At_Play_Position));
    bar->addStretch(1);
    all->addLayout(bar);

    list = new QTreeWidget(this);
    list->setObjectName(QStringLiteral("list"));
    list->setAccessibleName(tr("Marks"));
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setHeaderLabels({tr("Mark"), tr("Position"), tr("End")});
    list->header()->setStretchLastSection(false);
    list->header()->setSectionResizeMode(NAME_COLUMN, QHeaderView::Stretch);
    list->setMinimumSize(theme.Px(340), theme.Px(200));
    connect(list, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* item) {
        selection.Select(item == nullptr ? -1 : item->data(0, ROW_ROLE).toInt());
    });
    // Arrows look around; a click or Enter goes there.
    connect(list, &QTreeWidget::itemClicked, &selection, &Mark_Selection::Go_To);
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* enter = new QShortcut(QKeySequence(key), list);
        enter->setContext(Qt::WidgetShortcut);
        connect(enter, &QShortcut::activated, &selection, &Mark_Selection::Go_To);
    }
    auto* deleteKey = new QShortcut(QKeySequence(Qt::Key_Delete), list);
    deleteKey->setContext(Qt::WidgetShortcut);
    connect(deleteKey, &QShortcut::activated, &selection, &Mark_Selection::Delete);
    auto* insertKey = new QShortcut(QKeySequence(Qt::Key_Insert), this);
    connect(insertKey, &QShortcut::activated, this, &frmMarks::Add);
    all->addWidget(list, 1);

    auto* row = new QHBoxLayout;
    row->setSpacing(theme.Px(8));
    auto* label = new QLabel(tr("&Name:"), this);
    name = new QLineEdit(this);
    name->setObjectName(QStringLiteral("name"));
    name->setAccessibleName(tr("Name of the mark"));
    label->setBuddy(name);
    connect(name, &QLineEdit::editingFinished, this, &frmMarks::Rename);
    auto* close = new QPushButton(tr("C&lose"), this);
    close->setAutoDefault(false);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    row->addWidget(label);
    row->addWidget(name, 1);
    row->addWidget(close);
    all->addLayout(row);
}

QIcon frmMarks::Flag_Icon(int markRow) const {
    const int edge = theme.Px(12);
    QPixmap picture(QSize(edge, edge) * devicePixelRatioF());
    picture.setDevicePixelRatio(devicePixelRatioF());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Mark_Colour(theme.Tokens(), session.marks.Row(markRow), markRow));
    painter.drawRoundedRect(QRectF(0, 0, edge, edge), theme.Px(3), theme.Px(3));
    // The style would tint it in a selected row.
    QIcon icon(picture);
    icon.addPixmap(picture, QIcon::Selected);
    return icon;
}

void frmMarks::Update_View() {
    {
        const QSignalBlocker quiet(list);
        list->clear();
        for (const int row : session.marks.In_Time_Order()) {
            const Mark& mark = session.marks.Row(row);
            auto* item = new QTreeWidgetItem(list);
            item->setIcon(NAME_COLUMN, Flag_Icon(row));
            item->setText(NAME_COLUMN, QString::fromStdString(mark.MarkName));
            item->setText(START_COLUMN, QString::fromStdString(Format_Beats(mark.MarkStart)));
            if (mark.MarkEnd > mark.MarkStart)
                item->setText(END_COLUMN, QString::fromStdString(Format_Beats(mark.MarkEnd)));
            item->setData(0, ROW_ROLE, row);
        }
    }
    Show_Selected();
}

void frmMarks::Show_Selected() {
    const int row = selection.Row();
    const bool any = session.marks.Is_Live(row);
    {
        const QSignalBlocker quiet(list);
        QTreeWidgetItem* current = nullptr;
        for (int i = 0; i < list->topLevelItemCount(); ++i)
            if (list->topLevelItem(i)->data(0, ROW_ROLE).toInt() == row)
                current = list->topLevelItem(i);
        list->setCurrentItem(current);
    }
    for (Tool_Button* button : needMark)
        button->setEnabled(any);
    name->setEnabled(any);
    // What is being typed is not taken away by a change elsewhere.
    if (row != namedRow || !name->isModified())
        name->setText(any ? QString::fromStdString(session.marks.Row(row).MarkName) : QString());
    namedRow = row;
}

void frmMarks::Rename() {
    const int row = selection.Row();
    const std::string typed = name->text().toStdString();
    name->setModified(false);
    if (session.marks.Is_Live(row) && session.marks.Row(row).MarkName != typed)
        session.hub->Message(this, MSG_CHANGE_MARK, std::int32_t{row}, typed);
}

void frmMarks::Add() {
    if (selection.Add_At_Play_Position())
        Edit_Name();
}

void frmMarks::Edit_Name() {
    name->setFocus();
    name->selectAll();
}

} // namespace tonvex
