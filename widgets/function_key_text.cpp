#include "widgets/function_key_text.h"

#include "platform/qt/virtual_keys.h"

namespace tonvex {

QKeySequence Key_Of_Function(const Session& session, std::string_view internalName) {
    const Function_Key_Table& table = session.functionKeys;
    const int row = table.Row_Of_Function(internalName);
    if (row < 0)
        return {};
    const FunctionKey& function = table.FunctionKeys[static_cast<std::size_t>(row)];
    // The first row with the key has it.
    if (table.Row_Of_Key(function.KeyCode, function.Modifier) != row)
        return {};
    return Shown_Key(function.KeyCode, function.Modifier);
}

QString Function_Key_Text(const Session& session, std::string_view internalName) {
    return Key_Of_Function(session, internalName).toString(QKeySequence::NativeText);
}

} // namespace tonvex
