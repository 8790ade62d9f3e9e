#include "widgets/channel_row.h"

#include "widgets/channel_texts.h"
#include "widgets/frm_patch_selection_win.h"
#include "widgets/level_meter.h"
#include "widgets/tool_button.h"
#include "widgets/value_slider.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>

namespace tonvex {

namespace {

constexpr int VOLUME_NEUTRAL = 80;
constexpr int PAN_NEUTRAL = 64;

} // namespace

Channel_Row::Channel_Row(Session& owner, Theme& look, std::int32_t channel, QWidget* parent)
    : QWidget(parent), session(owner), theme(look), channelId(channel),
      patch(new Tool_Button(theme, Button_Kind::Caption, {}, {}, {}, this)),
      mute(new Tool_Button(theme, Button_Kind::Letter, {}, {}, {}, this)),
      solo(new Tool_Button(theme, Button_Kind::Letter, {}, {}, {}, this)),
      armed(new Tool_Button(theme, Button_Kind::Letter, {}, {}, {}, this)),
      volume(new Value_Slider(theme, Slider_Kind::Fill, {}, 0, 127, VOLUME_NEUTRAL, 5, this)),
      pan(new Value_Slider(theme, Slider_Kind::Centre, {}, 0, 127, PAN_NEUTRAL, 6, this)),
      meter(new Level_Meter(theme, {}, 1, this)) {
    mute->Set_Letter(tr("M"));
    solo->Set_Letter(tr("S"));
    mute->setCheckable(true);
    solo->setCheckable(true);
    pan->toText = Pan_Text;
    connect(patch, &QToolButton::clicked, this, &Channel_Row::Open_Patches);
    connect(mute, &QToolButton::clicked, this,
            [this](bool on) { session.hub->Message(this, MSG_SET_MUTE, channelId, on); });
    connect(solo, &QToolButton::clicked, this,
            [this](bool on) { session.hub->Message(this, MSG_SET_SOLO, channelId, on); });
    connect(armed, &QToolButton::clicked, this, [this] { emit selectAsked(channelId); });
    connect(volume, &Value_Slider::userChanged, this, [this](int value) {
        session.hub->Message(this, MSG_SET_VOLUME, channelId, std::int32_t{value});
    });
    connect(pan, &Value_Slider::userChanged, this,
            [this](int value) { session.hub->Message(this, MSG_SET_PAN, channelId, std::int32_t{value}); });
    connect(&theme, &Theme::Changed, this, [this] {
        updateGeometry();
        resizeEvent(nullptr);
        update();
    });
    Set_Selected(false);
    Refresh();
}

QSize Channel_Row::sizeHint() const {
    return {theme.Px(320), theme.Px(54)};
}

QSize Channel_Row::minimumSizeHint() const {
    return {theme.Px(276), theme.Px(54)};
}

QRect Channel_Row::Name_Place() const {
    return {theme.Px(12), theme.Px(9), mute->x() - theme.Px(20), theme.Px(19)};
}

QRect Channel_Row::Patch_Place() const {
    return {theme.Px(12), theme.Px(28), mute->x() - theme.Px(20), theme.Px(18)};
}

void Channel_Row::resizeEvent(QResizeEvent*) {
    const int middle = height() / 2;
    int right = width() - theme.Px(14);
    meter->resize(meter->sizeHint());
    right -= meter->width();
    meter->move(right, middle - meter->height() / 2);
    right -= theme.Px(12) + volume->sizeHint().width();
    volume->setGeometry(right, middle - theme.Px(17), volume->sizeHint().width(), theme.Px(16));
    pan->setGeometry(right, middle + theme.Px(1), pan->sizeHint().width(), theme.Px(16));
    right -= theme.Px(6);
    for (Tool_Button* button : {armed, solo, mute}) {
        const QSize size = button->sizeHint();
        right -= size.width();
        button->setGeometry(right, middle - size.height() / 2, size.width(), size.height());
        right -= theme.Px(3);
    }
    patch->setGeometry(Patch_Place());
    if (editor != nullptr)
        editor->setGeometry(Name_Place().adjusted(-theme.Px(4), -theme.Px(4), 0, theme.Px(4)));
}

void Channel_Row::Refresh() {
    tableRow = session.channels->ChannelI(channelId);
    if (tableRow < 0)
        return;
    const GlobalChannel& channel = session.channels->Channels[static_cast<std::size_t>(tableRow)];
    const QString newName = QString::fromStdString(channel.ChannelName);
    const QString newPatch = Patch_Line(session, tableRow);
    if (newName != name || newPatch != patchLine) {
        name = newName;
        patchLine = newPatch;
        setAccessibleName(tr("Channel %1").arg(name));
        setToolTip(tr("Double click or F2 to rename"));
        patch->Set_Pill({}, patchLine);
        patch->Set_Name(tr("Patch of %1: %2").arg(name, patchLine), {});
        mute->Set_Name(tr("Mute %1").arg(name), {});
        solo->Set_Name(tr("Solo %1").arg(name), {});
        armed->Set_Name(tr("Record on %1").arg(name), {});
        volume->setAccessibleName(tr("Volume of %1").arg(name));
        pan->setAccessibleName(tr("Pan of %1").arg(name));
        meter->Set_Name(tr("Level of %1").arg(name));
        update();
    }
    mute->setChecked(Is_On(channel.Mute));
    solo->setChecked(Is_On(channel.Solo));
    volume->Show_Value(channel.Volume);
    pan->Show_Value(channel.Pan);
}

void Channel_Row::Set_Selected(bool selected) {
    isSelected = selected;
    armed->Set_Dot(selected);
    const Qt::FocusPolicy policy = selected ? Qt::StrongFocus : Qt::ClickFocus;
    setFocusPolicy(policy);
    for (QWidget* control : std::initializer_list<QWidget*>{patch, mute, solo, armed, volume, pan})
        control->setFocusPolicy(policy);
    for (Tool_Button* button : {mute, solo, armed})
        button->Set_On_Control(selected);
    meter->Set_On_Control(selected);
    setAccessibleDescription(selected ? tr("selected, armed for recording") : QString());
    update();
}

void Channel_Row::Start_Rename() {
    if (editor != nullptr)
        return;
    editor = new QLineEdit(name, this);
    editor->setAccessibleName(tr("New name of %1").arg(name));
    editor->setMaxLength(50);
    editor->setGeometry(Name_Place().adjusted(-theme.Px(4), -theme.Px(4), 0, theme.Px(4)));
    editor->selectAll();
    editor->installEventFilter(this);
    editor->show();
    editor->setFocus();
    connect(editor, &QLineEdit::editingFinished, this, [this] { Finish_Rename(true); });
}

void Channel_Row::Finish_Rename(bool take) {
    if (editor == nullptr)
        return;
    QLineEdit* done = std::exchange(editor, nullptr);
    const QString typed = done->text().trimmed();
    const bool hadFocus = done->hasFocus();
    done->hide();
    done->deleteLater();
    if (hadFocus)
        setFocus();
    if (take && !typed.isEmpty() && typed != name)
        session.hub->Message(this, MSG_SET_NAME, channelId, typed.toStdString());
    update();
}

bool Channel_Row::eventFilter(QObject* watched, QEvent* event) {
    if (watched == editor && event->type() == QEvent::ShortcutOverride) {
        // Enter and Escape are the editor's while it is open.
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter) {
            event->accept();
            return true;
        }
    }
    if (watched == editor && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        Finish_Rename(false);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void Channel_Row::Open_Patches() {
    emit selectAsked(channelId);
    const int row = session.channels->ChannelI(channelId);
    if (row < 0 || Is_On(session.channels->Channels[static_cast<std::size_t>(row)].IsAudio))
        return;
    (new frmPatchSelectionWin(session, channelId, window()))->open();
}

void Channel_Row::Show_Level(float peak, int elapsedMs) {
    meter->Show_Peaks(peak, 0.0F, elapsedMs);
}

void Channel_Row::Clear_Clip() {
    meter->Clear_Clip();
}

bool Channel_Row::Meter_Is_Still() const {
    return meter->Is_Still();
}

QWidget* Channel_Row::Order_Tabs() {
    QWidget* last = this;
    for (QWidget* control : std::initializer_list<QWidget*>{patch, mute, solo, armed, volume, pan}) {
        setTabOrder(last, control);
        last = control;
    }
    return last;
}

bool Channel_Row::Has_Focus_Within() const {
    const QWidget* focus = QApplication::focusWidget();
    return focus != nullptr && (focus == this || isAncestorOf(focus));
}

void Channel_Row::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Theme_Tokens& t = theme.Tokens();
    painter.fillRect(rect(), isSelected ? t.control : t.panel);
    painter.fillRect(QRect(0, 0, theme.Px(4), height() - 1), t.Channel(tableRow));
    painter.fillRect(QRect(0, height() - 1, width(), 1), t.line);
    painter.setFont(theme.Font(Text_Size::Body, QFont::DemiBold));
    painter.setPen(t.text);
    if (editor == nullptr)
        painter.drawText(Name_Place(), Qt::AlignLeft | Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(name, Qt::ElideRight, Name_Place().width()));
    if (hasFocus())
        Paint_Focus_Ring(painter, theme, QRectF(rect()).adjusted(0, 0, 0, -1), theme.Px(5));
}

void Channel_Row::mousePressEvent(QMouseEvent* event) {
    emit selectAsked(channelId);
    event->accept();
}

void Channel_Row::mouseDoubleClickEvent(QMouseEvent* event) {
    if (Name_Place().contains(event->position().toPoint()))
        Start_Rename();
}

bool Channel_Row::event(QEvent* event) {
    // F2 is an octave key of the window; on a row with the focus it renames.
    if (event->type() == QEvent::ShortcutOverride) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_F2 || key == Qt::Key_Home || key == Qt::Key_End) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

void Channel_Row::keyPressEvent(QKeyEvent* event) {
    constexpr int FAR = 1000;
    switch (event->key()) {
    case Qt::Key_Up:
        emit stepAsked(-1);
        break;
    case Qt::Key_Down:
        emit stepAsked(1);
        break;
    case Qt::Key_Home:
        emit stepAsked(-FAR);
        break;
    case Qt::Key_End:
        emit stepAsked(FAR);
        break;
    case Qt::Key_F2:
        Start_Rename();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

} // namespace tonvex
