#include "platform/qt/x11_auto_repeat.h"

#include <QGuiApplication>

// Last: these headers define words such as Bool, None and KeyPress as macros.
#include <X11/XKBlib.h>

namespace tonvex {

void Drop_False_Releases() {
    if (qGuiApp == nullptr)
        return;
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 != nullptr && x11->display() != nullptr)
        XkbSetDetectableAutoRepeat(x11->display(), True, nullptr);
}

} // namespace tonvex
