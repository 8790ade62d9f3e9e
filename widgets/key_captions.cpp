#include "widgets/key_captions.h"

#include <string_view>

namespace tonvex {

QString Key_Caption(int scanCode) {
    struct Row {
        int firstCode;
        std::string_view signs;
    };
    static constexpr Row ROWS[] = {
        {2, "1234567890-="}, {16, "QWERTYUIOP[]"}, {30, "ASDFGHJKL;'`"}, {43, "\\ZXCVBNM,./"}, {86, "<"}};
    for (const Row& row : ROWS) {
        const int place = scanCode - row.firstCode;
        if (place >= 0 && place < static_cast<int>(row.signs.size()))
            return QString(QLatin1Char(row.signs[static_cast<std::size_t>(place)]));
    }
    return {};
}

} // namespace tonvex
