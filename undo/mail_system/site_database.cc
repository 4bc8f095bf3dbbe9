#include "undo/mail_system/site_database.h"

#include "support/database/database_file.h"
#include "support/system/file.h"
#include "support/text/printable.h"

SString SiteDatabase(const SString& file) {
    if (file.Index('/') < 0) return file;
    const SString name = BaseName(file, "");
    const SString here = DatabasePath(name);
    const SString directory = RealPath(file.S("[^/]+$", ""));
    const bool is_here =
        !here.IsEmpty() && !directory.IsEmpty() && RealPath(here.S("[^/]+$", "")) == directory;
    return is_here ? name : SString();
}

SString OfAnotherSite(const SString& file) {
    return Printable(file) + " belongs to another data directory than the one that is configured now";
}
