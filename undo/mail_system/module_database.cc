#include "undo/mail_system/module_database.h"

#include "support/system/file.h"
#include "undo/mail_system/changes_of.h"

SString NewVersion(const SString& file) {
    return file + ".install";
}

SString Backup(const SString& file) {
    return file + ".backup";
}

bool IsHalfWritten(const SString& path) {
    return FileSize(path + "-journal") > 0;
}

std::optional<change::DatabaseExchanged> ExchangeOf(const SString& file, const UndoneRun& run) {
    std::optional<change::DatabaseExchanged> found;
    EachOf<change::DatabaseExchanged>(run, [&](const auto& exchange) {
        if (exchange.file == file) found = exchange;
    });
    return found;
}
