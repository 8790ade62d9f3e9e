#include "platform/qt/key_signs.h"

#include <QGuiApplication>

// Last: these headers define words such as Bool, None and KeyPress as macros.
#include <X11/XKBlib.h>
#include <X11/keysym.h>

namespace tonvex {

namespace {

constexpr int WINDOW_SYSTEM_OFFSET = 8;
constexpr unsigned long UNICODE = 0x1000000;

struct Dead_Key {
    unsigned long symbol;
    char16_t sign;
};

constexpr Dead_Key DEAD_KEYS[] = {{XK_dead_grave, u'`'},          {XK_dead_acute, u'\u00B4'},
                                  {XK_dead_circumflex, u'^'},     {XK_dead_tilde, u'~'},
                                  {XK_dead_cedilla, u'\u00B8'},   {XK_dead_diaeresis, u'\u00A8'},
                                  {XK_dead_abovering, u'\u00B0'}, {XK_dead_caron, u'\u02C7'}};

} // namespace

QString Sign_Of_Symbol(unsigned long symbol) {
    for (const Dead_Key& dead : DEAD_KEYS)
        if (dead.symbol == symbol)
            return QString(QChar(dead.sign));
    const bool latin = (symbol > 0x20 && symbol < 0x7F) || (symbol > 0xA0 && symbol <= 0xFF);
    const bool unicode = symbol > UNICODE + 0xFF && symbol < UNICODE + 0xD800;
    if (!latin && !unicode)
        return {};
    const QChar sign(static_cast<char16_t>(latin ? symbol : symbol - UNICODE));
    return sign.isPrint() && !sign.isSpace() ? QString(sign.toUpper()) : QString();
}

Key_Signs Signs_On_Keys() {
    Key_Signs signs;
    const auto* x11 =
        qGuiApp == nullptr ? nullptr : qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    XkbStateRec state{};
    if (x11 == nullptr || x11->display() == nullptr ||
        XkbGetState(x11->display(), XkbUseCoreKbd, &state) != Success)
        return signs;
    for (std::size_t scanCode = 1; scanCode < signs.size(); ++scanCode) {
        const auto keyCode = static_cast<KeyCode>(scanCode + WINDOW_SYSTEM_OFFSET);
        signs[scanCode] = Sign_Of_Symbol(XkbKeycodeToKeysym(x11->display(), keyCode, state.group, 0));
    }
    return signs;
}

} // namespace tonvex
