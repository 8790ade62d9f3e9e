// Writes the keyboard layouts that ship with the program: make_layouts FOLDER (data/keyboard).

#include "base/file_io.h"
#include "tools/stock_layouts.h"

#include <cstdio>
#include <filesystem>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: make_layouts FOLDER\n", stderr);
        return 2;
    }
    for (const auto& layout : tonvex::Stock_Layouts()) {
        std::string error;
        const auto path = std::filesystem::path(argv[1]) / (layout.name + ".dat");
        if (!tonvex::Replace_File(path, tonvex::Write_Layout(layout.tables), error)) {
            std::fprintf(stderr, "make_layouts: %s\n", error.c_str());
            return 1;
        }
    }
    return 0;
}
