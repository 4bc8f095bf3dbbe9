#include "install/host/services.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "install/settings.h"
#include "support/system/file.h"
#include "tests/temporary_folder.h"

namespace {

const SString kBlock =
    "##\n## Services added during installation of tern.harbor.\n## Sorry that they aren't in order....\n##\n";

TEST(ServiceEntry, PadsTheNameToTenCharacters) {
    EXPECT_EQ(ServiceEntry("smtp", "25"), "smtp       25/tcp");
    EXPECT_EQ(ServiceEntry("finger", "79"), "finger     79/tcp");
    EXPECT_EQ(ServiceEntry("0123456789", "1"), "0123456789 1/tcp");
    EXPECT_EQ(ServiceEntry("0123456789a", "1"), "0123456789a 1/tcp");
}

TEST(MissingServices, AsksForTheNameOnly) {
    // Every host knows "domain"; under which port does not matter.
    EXPECT_EQ(MissingServices({"domain"}, {"1"}), SStringList());
    EXPECT_EQ(MissingServices({"no-such-one", "domain", "nor-this"}, {"1", "2", "3"}),
              SStringList({ServiceEntry("no-such-one", "1"), ServiceEntry("nor-this", "3")}));
    EXPECT_EQ(MissingServices({}, {}), SStringList());
}

struct Placement {
    const char* what;
    SStringList before;
    SString after;
};

TEST(WithServices, PutsTheEntriesBehindTheLeadingComments) {
    const SString added = kBlock + "a 1/tcp\nb 2/tcp\n";
    const Placement cases[] = {
        {"an empty file", {}, added},
        {"comments, then entries",
         {"# one\n", "#two\n", "x 9/tcp\n", "# in\n"},
         "# one\n#two\n" + added + "x 9/tcp\n# in\n"},
        {"an empty line first", {"\n", "# one\n", "x 9/tcp\n"}, added + "\n# one\nx 9/tcp\n"},
        {"an indented comment first", {" # one\n"}, added + " # one\n"},
        {"comments only", {"# one\n"}, "# one\n" + added},
        {"a comment without its line end", {"# one"}, "# one\n" + added},
        {"an entry without its line end", {"# one\n", "x 9/tcp"}, "# one\n" + added + "x 9/tcp"},
    };
    for (const Placement& placement : cases) {
        EXPECT_EQ(WithServices(placement.before, {"a 1/tcp", "b 2/tcp"}).Join(), placement.after)
            << placement.what;
    }
}

TEST(UpdateServicesFile, RewritesAReadOnlyFileBesideItsThirdBackup) {
    const TemporaryFolder folder;
    gstr_ServicesFile = folder.Write("services", "# head\nx 9/tcp\n", 0444);
    folder.Write("services.bak", "first\n");
    folder.Write("services.bak1", "second\n");
    EXPECT_TRUE(UpdateServicesFile({"a 1/tcp"}));
    EXPECT_EQ(MapFileRead(gstr_ServicesFile), "# head\n" + kBlock + "a 1/tcp\nx 9/tcp\n");
    EXPECT_EQ(MapFileRead(folder / "services.bak2"), "# head\nx 9/tcp\n");
    EXPECT_EQ(MapFileRead(folder / "services.bak1"), "second\n");
    struct stat status {};
    ASSERT_EQ(stat(gstr_ServicesFile.CString(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0444U);
}

TEST(UpdateServicesFile, FailsWhereThereIsNoFile) {
    const TemporaryFolder folder;
    gstr_ServicesFile = folder / "services";
    EXPECT_FALSE(UpdateServicesFile({"a 1/tcp"}));
    EXPECT_TRUE(ReadDir(folder / "").IsEmpty());
}

}  // namespace
