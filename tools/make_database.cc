// make_database TEXT DATABASE: makes a module database from readable text, a line for each value:
//
//   # The port of the web administration.
//   /Config Socket: 80
//   /Config WWWAccess: example.com
//   /Config WWWAccess: example.net
//   /Statistics
//
// A line has a table path, blanks, the key, ": " and the value, which is the rest of the line unchanged;
// another line with the same path and key adds a value. A path alone makes an empty table. The database
// appears whole or not at all. Exit status 0; 1 if the text is malformed or a file cannot be read or written;
// 2 for wrong usage.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "support/database/sdbfile.h"
#include "support/system/environment.h"
#include "support/system/file.h"
#include "support/text/named_list.h"

namespace {

using Tables = std::map<SString, SNamedStringList>;

bool Complain(const SString& what) {
    std::cerr << "make_database: " << what << "\n";
    return false;
}

bool ReadLine(const SString& line, Tables* tables) {
    if (line.Matches("^\\s*(#|$)")) return true;
    const SStringList setting = line.M("^(/\\S*)[ \\t]+([^:]*[^: \\t]):(?: (.*))?$");
    const SStringList table = line.M("^(/\\S*)\\s*$");
    if (!setting.IsEmpty()) {
        (*tables)[setting[0]][setting[1]].Push(setting.Get(2));
    } else if (!table.IsEmpty()) {
        (*tables)[table[0]];
    }
    return !setting.IsEmpty() || !table.IsEmpty();
}

bool ReadText(const SString& path, Tables* tables) {
    std::ifstream file(path.CString(), std::ios::binary);
    if (!file) return Complain("cannot read " + path);
    SString line;  // a directory can be opened, but reads as empty
    for (int number = 1; file >> line; ++number) {
        if (!ReadLine(line.ChopLineEnd(), tables)) {
            return Complain(path + ":" + SString(number) +
                            ": neither \"TABLE-PATH KEY: value\" nor a table path");
        }
    }
    return tables->empty() ? Complain(path + ": no table in it") : true;
}

bool WriteTables(const SString& name, const Tables& tables) {
    Sdbfile database(name, 0);
    for (const auto& [path, settings] : tables) {
        if (database.Open(path, 1) == 0) return false;
        for (const SString& key : settings.Keys()) {
            if (database.Set(key, settings.Get(key)) == 0) return false;
        }
    }
    return true;
}

/// A data directory of its own beside the database, so that the finished file only needs to be renamed.
class Workshop {
  public:
    explicit Workshop(const SString& database) : path_((database + ".XXXXXX").Bytes()) {
        is_ready_ = mkdtemp(path_.data()) != nullptr && MakeDir(SString(path_) + "/config", 0700);
        PutEnv("TernHarbor", SString(path_));
    }
    ~Workshop() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;
    bool IsReady() const { return is_ready_; }
    SString Product(const SString& name) const { return SString(path_) + "/config/" + name; }

  private:
    std::string path_;
    bool is_ready_;
};

bool WriteDatabase(const SString& path, const Tables& tables) {
    const Workshop workshop(path);
    const SString name = BaseName(path, "");
    return (workshop.IsReady() && WriteTables(name, tables) && Rename(workshop.Product(name), path)) ||
           Complain("cannot write " + path);
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "usage: make_database TEXT DATABASE\n";
        return 2;
    }
    Tables tables;
    return ReadText(arguments[1], &tables) && WriteDatabase(arguments[2], tables) ? EXIT_SUCCESS
                                                                                  : EXIT_FAILURE;
}
