// Any bytes as the file of the function keys: rows keep what is the program's, what was read is written and
// read again as it is, and every key finds a row of the table or none.

#include "app/function_keys.h"
#include "fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tonvex;
    static const Function_Key_Table shipped;
    Function_Key_Table table;
    table.FunctionKeys_Read({data, size});
    for (std::size_t row = 0; row < Function_Key_Table::ROWS; ++row) {
        const FunctionKey& now = table.FunctionKeys[row];
        const FunctionKey& then = shipped.FunctionKeys[row];
        Require(now.InternalName == then.InternalName && now.Locked == then.Locked &&
                    now.WhileRunning == then.WhileRunning,
                "the file changed what is the program's");
        Require(now.Name == then.Name || !now.Name.empty(), "a name was lost");
        (void)table.Key_Text(static_cast<int>(row));
    }
    Function_Key_Table again;
    again.FunctionKeys_Read(table.FunctionKeys_Bytes());
    Require(again.FunctionKeys == table.FunctionKeys, "the second reading differs");
    for (int key = 0; key < 256; ++key) {
        const int row = table.Row_Of_Key(key, key % 8);
        Require(row < static_cast<int>(Function_Key_Table::ROWS), "no such row");
        if (table.Assign_Key(key % 81, key, key % 8))
            Require(table.Row_Of_Key(key, key % 8) == key % 81, "an assigned key runs another row");
    }
    return 0;
}
