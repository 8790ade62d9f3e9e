#pragma once

#include "support/test_session.h"
#include "widgets/theme.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QTest>
#include <QWidget>

#include <string>

namespace tonvex {

template <typename Widget>
Widget* Find(const QWidget& window, const char* name) {
    auto* found = window.findChild<Widget*>(QLatin1String(name));
    if (found == nullptr)
        qFatal("no %s", name);
    return found;
}

inline void Click(const QWidget& window, const char* name) {
    Find<QAbstractButton>(window, name)->click();
}

/// Letters that reach a control of the window as it is: of its buttons and of the labels of its fields, lower
/// case.
inline QStringList Mnemonics(const QWidget& window) {
    QStringList letters;
    const auto take = [&](const QString& text) {
        const qsizetype at = text.indexOf('&');
        if (at >= 0)
            letters << text.mid(at + 1, 1).toLower();
    };
    for (const auto* button : window.findChildren<QAbstractButton*>())
        if (button->isVisibleTo(&window))
            take(button->text());
    for (const auto* label : window.findChildren<QLabel*>())
        if (label->buddy() != nullptr && label->isVisibleTo(&window))
            take(label->text());
    return letters;
}

/// A loaded session with one output port, one input port and no fonts of the system.
struct World {
    World() {
        test.midi.outputs = {{"Port", 3}};
        test.midi.inputs = {{"Keys", 4}};
        test.Make().fonts->fallbackFonts.clear();
        test.session->Load();
        test.dialogs.shown.clear();
    }
    Session& S() { return *test.session; }
    std::string Last_Text() const { return test.dialogs.shown.empty() ? "" : test.dialogs.shown.back().text; }

    Memory_Settings_Store look;
    Theme theme{*qApp, look};
    Test_Session test;
};

} // namespace tonvex
