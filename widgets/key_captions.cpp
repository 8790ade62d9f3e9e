#include "widgets/key_captions.h"

#include "platform/qt/key_signs.h"

#include <string_view>

namespace tonvex {

std::array<QString, 256> Key_Captions() {
    struct Row {
        std::size_t firstCode;
        std::string_view signs;
    };
    static constexpr Row ROWS[] = {
        {2, "1234567890-="}, {16, "QWERTYUIOP[]"}, {30, "ASDFGHJKL;'`"}, {43, "\\ZXCVBNM,./"}, {86, "<"}};
    const Key_Signs own = Signs_On_Keys();
    std::array<QString, 256> captions;
    for (const Row& row : ROWS) {
        for (std::size_t place = 0; place < row.signs.size(); ++place) {
            const std::size_t key = row.firstCode + place;
            captions[key] = own[key].isEmpty() ? QString(QLatin1Char(row.signs[place])) : own[key];
        }
    }
    return captions;
}

} // namespace tonvex
