#include "platform/qt/qt_key_state.h"

#include "platform/qt/native_scan_codes.h"
#include "platform/qt/x11_auto_repeat.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace tonvex {

namespace {

/// Presses beyond this are dropped: nobody reads the queue any more.
constexpr std::size_t QUEUE_LIMIT = 4096;

bool Takes_Text(const QWidget* widget) {
    if (const auto* line = qobject_cast<const QLineEdit*>(widget))
        return !line->isReadOnly();
    if (const auto* text = qobject_cast<const QTextEdit*>(widget))
        return !text->isReadOnly();
    if (const auto* text = qobject_cast<const QPlainTextEdit*>(widget))
        return !text->isReadOnly();
    if (const auto* box = qobject_cast<const QComboBox*>(widget))
        return box->isEditable();
    return qobject_cast<const QAbstractSpinBox*>(widget) != nullptr;
}

} // namespace

Qt_Key_State::Qt_Key_State(const Millisecond_Counter& clock) : counter(clock) {}

Qt_Key_State::~Qt_Key_State() {
    Close();
}

bool Qt_Key_State::Open() {
    if (qGuiApp == nullptr)
        return false;
    if (isOpen)
        return true;
    Drop_False_Releases();
    qGuiApp->installEventFilter(this);
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state != Qt::ApplicationActive)
            Forget_Held_Keys();
    });
    isOpen = true;
    return true;
}

void Qt_Key_State::Close() {
    Release();
    isOpen = false;
    held.fill(Held::Up);
    if (qGuiApp != nullptr) {
        qGuiApp->removeEventFilter(this);
        disconnect(qGuiApp, nullptr, this, nullptr);
    }
}

bool Qt_Key_State::Acquire() {
    if (!isOpen || acquired)
        return acquired;
    acquired = true;
    for (std::size_t key = 0; key < held.size(); ++key)
        if (held[key] == Held::DownToPlay && (!accept || accept(static_cast<int>(key))))
            Queue_Edge(static_cast<std::uint8_t>(key), true, counter.Now_Ns());
    return true;
}

void Qt_Key_State::Release() {
    acquired = false;
    queue.clear();
    playing.fill(false);
}

bool Qt_Key_State::Read(Key_State& state) {
    if (!acquired)
        return false;
    if (queue.empty())
        return true;
    const Edge edge = queue.front();
    queue.pop_front();
    state.down[edge.scanCode] = edge.down ? 1 : 0;
    state.changedAtNs[edge.scanCode] = edge.atNs;
    return true;
}

bool Qt_Key_State::eventFilter(QObject* receiver, QEvent* event) {
    switch (event->type()) {
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        break;
    case QEvent::WindowDeactivate:
    case QEvent::WindowBlocked: // by a modal dialog
        Release_Playing_Keys();
        return QObject::eventFilter(receiver, event);
    default:
        return QObject::eventFilter(receiver, event);
    }
    auto& keyEvent = static_cast<QKeyEvent&>(*event);
    const std::uint8_t scanCode = Scan_Code_Of_Native(keyEvent.nativeScanCode());
    if (scanCode == 0)
        return QObject::eventFilter(receiver, event);
    if (event->type() == QEvent::ShortcutOverride)
        return On_Shortcut_Override(scanCode, keyEvent);
    return event->type() == QEvent::KeyPress ? On_Press(scanCode, keyEvent) : On_Release(scanCode, keyEvent);
}

bool Qt_Key_State::Would_Play(std::uint8_t scanCode, const QKeyEvent& event) const {
    constexpr Qt::KeyboardModifiers COMMANDS = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    Qt::KeyboardModifiers modifiers = event.modifiers() & COMMANDS;
    // A modifier key pressed alone may carry its own flag.
    switch (event.key()) {
    case Qt::Key_Control:
        modifiers.setFlag(Qt::ControlModifier, false);
        break;
    case Qt::Key_Alt:
        modifiers.setFlag(Qt::AltModifier, false);
        break;
    case Qt::Key_Meta:
        modifiers.setFlag(Qt::MetaModifier, false);
        break;
    default:
        break;
    }
    return !modifiers && (!accept || accept(scanCode)) && QGuiApplication::modalWindow() == nullptr &&
           QApplication::activePopupWidget() == nullptr && !Takes_Text(QApplication::focusWidget());
}

bool Qt_Key_State::On_Shortcut_Override(std::uint8_t scanCode, QKeyEvent& event) {
    if (acquired && (playing[scanCode] || Would_Play(scanCode, event))) {
        // Accepted: no shortcut is tried, the key comes again as a press.
        event.accept();
        return true;
    }
    if (held[scanCode] == Held::Up) {
        held[scanCode] = Held::Announced;
        announcedAt[scanCode] = event.timestamp();
    }
    return false;
}

bool Qt_Key_State::On_Press(std::uint8_t scanCode, const QKeyEvent& event) {
    Held& key = held[scanCode];
    // A press with the time of its announcement is the first; a later one repeats a key that a shortcut
    // took, and must not begin to play when that shortcut began the run.
    const bool first =
        key == Held::Up || (key == Held::Announced && announcedAt[scanCode] == event.timestamp());
    if (!first || event.isAutoRepeat())
        return playing[scanCode];
    const bool plays = Would_Play(scanCode, event);
    key = plays ? Held::DownToPlay : Held::Down;
    if (!plays || !acquired)
        return false;
    Queue_Edge(scanCode, true, Moment_Of(event));
    return true;
}

bool Qt_Key_State::On_Release(std::uint8_t scanCode, const QKeyEvent& event) {
    if (event.isAutoRepeat())
        return playing[scanCode];
    held[scanCode] = Held::Up;
    if (!playing[scanCode])
        return false;
    Queue_Edge(scanCode, false, Moment_Of(event));
    return true;
}

void Qt_Key_State::Queue_Edge(std::uint8_t scanCode, bool down, std::int64_t atNs) {
    if (down && queue.size() >= QUEUE_LIMIT)
        return;
    playing[scanCode] = down;
    queue.push_back({atNs, scanCode, down});
}

void Qt_Key_State::Release_Playing_Keys() {
    for (std::size_t key = 0; key < playing.size(); ++key)
        if (playing[key])
            Queue_Edge(static_cast<std::uint8_t>(key), false, counter.Now_Ns());
}

void Qt_Key_State::Forget_Held_Keys() {
    Release_Playing_Keys();
    held.fill(Held::Up);
}

std::int64_t Qt_Key_State::Moment_Of(const QKeyEvent& event) {
    return eventClock.Moment_Of(event.timestamp(), counter.Now_Ns());
}

} // namespace tonvex
