#include "app/app_paths_class.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <vector>

namespace tonvex {
namespace {

const Path_Macros MACROS{"/exe",       "/home/u/Documents",    "/home/u/.config",
                         "/usr/share", "/home/u/.local/share", "/home/u/.cache"};

struct Line_Case {
    const char* name;
    const char* file;
    bool ok;
    const char* asked;
    const char* path; ///< empty: unknown key
};

TEST(AppPaths_Class_Test, Reads_Lines) {
    const std::vector<Line_Case> cases = {
        {"plain", "config=/a", true, "config", "/a"},
        {"blanks and letter case of the key", "  CoNfig = /a b \r\n", true, "config", "/a b"},
        {"asked with a trailing blank", "projectsaudio=/p", true, "projectsaudio ", "/p"},
        {"asked in other letter case", "temp=/t", true, "TEMP", "/t"},
        {"two signs make three pieces", "config=/a=b", true, "config", ""},
        {"no sign", "config\ntemp=/t", true, "temp", "/t"},
        {"empty value", "config=  \n", true, "config", ""},
        {"empty key", "=/a\ntemp=/t", true, "temp", "/t"},
        {"empty file", "", true, "config", ""},
        {"same key twice", "config=/a\nCONFIG=/b", false, "config", "/a"},
        {"skipped line does not count as the same key", "config=/a=b\nconfig=/c", true, "config", "/c"},
        {"macro", "config={ApplicationData}/tonvex", true, "config", "/home/u/.config/tonvex"},
        {"macro in other letter case", "temp={myDOCUMENTS}/x{mydocuments}", true, "temp",
         "/home/u/Documents/x/home/u/Documents"},
        {"unknown macro stays", "temp={Nowhere}/x", true, "temp", "{Nowhere}/x"},
        {"all macros", "temp={AppEXE}|{CommonApplicationData}|{LocalApplicationData}|{Cache}", true, "temp",
         "/exe|/usr/share|/home/u/.local/share|/home/u/.cache"},
        {"a byte that is no UTF-8 is Windows-1252", "temp=/\xe4", true, "temp", "/\xc3\xa4"}};
    for (const Line_Case& row : cases) {
        SCOPED_TRACE(row.name);
        const Temp_Folder folder;
        AppPaths_Class paths;
        std::string error;
        paths.onError = [&error](const std::string& text) { error = text; };
        EXPECT_EQ(paths.LoadPaths(folder.Write("paths.cfg", row.file), true, MACROS), row.ok);
        EXPECT_EQ(paths.GetPath(row.asked), row.path);
        const bool known = *row.path != '\0';
        EXPECT_EQ(error, known ? "" : "Error retrieving path: " + std::string(row.asked) + "\n");
    }
}

TEST(AppPaths_Class_Test, Missing_File_And_Plain_Values) {
    const Temp_Folder folder;
    AppPaths_Class paths;
    EXPECT_FALSE(paths.LoadPaths(folder / "paths.cfg", true, MACROS));
    EXPECT_FALSE(paths.LoadPaths(folder.Path(), true, MACROS)) << "a folder is no file";
    EXPECT_TRUE(paths.LoadPaths(folder.Write("paths.cfg", "temp={AppEXE}\npatterns=p/q"), false, MACROS));
    EXPECT_EQ(paths.GetPath("temp"), "{AppEXE}") << "without expansion the value stays";
    EXPECT_EQ(paths.GetPath("patterns"), "p/q");
    EXPECT_EQ(paths.Get_Folder("patterns"), "/exe/p/q") << "relative to the executable";
    EXPECT_EQ(paths.Get_Folder("unknown"), "");
}

TEST(AppPaths_Class_Test, Macros_Go_One_After_The_Other) {
    Path_Macros macros = MACROS;
    macros.AppEXE = "{MyDocuments}/bin";
    EXPECT_EQ(AppPaths_Class::Expand_Macros("{appexe}", macros), "/home/u/Documents/bin")
        << "what an earlier macro brings is seen by a later one";
    macros = MACROS;
    macros.Cache = "{AppEXE}{Cache}";
    EXPECT_EQ(AppPaths_Class::Expand_Macros("{Cache}!", macros), "{AppEXE}{Cache}!") << "not by itself";
    macros.Cache.clear();
    EXPECT_EQ(AppPaths_Class::Expand_Macros("{Cache}/x", macros), "/x") << "a folder that is not known";
}

TEST(AppPaths_Class_Test, Folders_Of_The_Desktop) {
    const Temp_Folder home;
    const std::string h = home.Path().string();
    struct Row {
        const char* name;
        const char* variable; ///< with its value
        const char* userDirs;
        std::string Path_Macros::*field;
        std::string expected;
    };
    using M = Path_Macros;
    const std::vector<Row> rows = {
        {"config by default", "", "", &M::ApplicationData, h + "/.config"},
        {"config told", "XDG_CONFIG_HOME=/c", "", &M::ApplicationData, "/c"},
        {"a relative folder is none", "XDG_CONFIG_HOME=c", "", &M::ApplicationData, h + "/.config"},
        {"data by default", "", "", &M::LocalApplicationData, h + "/.local/share"},
        {"cache by default", "", "", &M::Cache, h + "/.cache"},
        {"common by default", "", "", &M::CommonApplicationData, "/usr/share"},
        {"the first common one", "XDG_DATA_DIRS=/one:/two", "", &M::CommonApplicationData, "/one"},
        {"no documents folder", "", "", &M::MyDocuments, h},
        {"documents below home", "", "#x\nXDG_DOCUMENTS_DIR=\"$HOME/Pap\"\n", &M::MyDocuments, h + "/Pap"},
        {"documents elsewhere", "", "XDG_DOCUMENTS_DIR=\"/srv/papers\"", &M::MyDocuments, "/srv/papers"},
        {"a broken line", "", "XDG_DOCUMENTS_DIR=\"", &M::MyDocuments, h}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        home.Write(".config/user-dirs.dirs", row.userDirs);
        const std::string variable = row.variable;
        const Path_Macros macros = Path_Macros::From("/exe", [&](const std::string& name) {
            return name == "HOME"                     ? h
                   : variable.starts_with(name + "=") ? variable.substr(name.size() + 1)
                                                      : "";
        });
        EXPECT_EQ(macros.*row.field, row.expected);
        EXPECT_EQ(macros.AppEXE, "/exe");
    }
    std::filesystem::create_directory(home / "Documents");
    EXPECT_EQ(Path_Macros::From("/exe", [&](const std::string& name) { return name == "HOME" ? h : ""; })
                  .MyDocuments,
              h + "/Documents");
}

} // namespace
} // namespace tonvex
