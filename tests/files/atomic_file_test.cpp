#include "files/atomic_file.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "host/host_fixture.h"
#include "support/file_fault.h"

namespace vorex::host_test {
namespace {

class AtomicFileTest : public HostTest {
  protected:
    static std::string FaultOf(const std::filesystem::path& target) {
        return test::MessageOf([&] { WriteWholeFile(target, "new"); });
    }
};

TEST_F(AtomicFileTest, TheOldFileStaysUntilTheNewOneIsComplete) {
    Write("a.xml", "old");
    {
        AtomicFile file(folder / "a.xml");
        file.Write("ne");
        EXPECT_EQ(Read("a.xml"), "old");
        file.Write("w");
        file.Commit();
        EXPECT_EQ(Read("a.xml"), "new");
    }
    {
        AtomicFile given(folder / "a.xml");
        given.Write("half");
    }
    EXPECT_EQ(Read("a.xml"), "new");
    EXPECT_EQ(FileCount(), 1U);
}

TEST_F(AtomicFileTest, TheNewFileHasTheRightsOfTheOldOne) {
    Write("a.xml", "old");
    ::chmod((folder / "a.xml").c_str(), 0640);
    WriteWholeFile(folder / "a.xml", "new");
    struct stat status {};
    ::stat((folder / "a.xml").c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(AtomicFileTest, ASymbolicLinkStaysALink) {
    Write("a.xml", "old");
    std::filesystem::create_symlink("a.xml", folder / "link.xml");
    WriteWholeFile(folder / "link.xml", "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.xml"));
    EXPECT_EQ(Read("a.xml"), "new");
}

TEST_F(AtomicFileTest, AFileThatCannotBeWrittenSaysWhy) {
    EXPECT_THAT(FaultOf("/dev/full"), testing::HasSubstr("/dev/full: cannot be written: No space left"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full")) << "a device is not replaced";
    EXPECT_THAT(FaultOf(folder), testing::HasSubstr("is a folder"));
    EXPECT_THAT(FaultOf(folder / "none" / "a.xml"), testing::HasSubstr("No such file or directory"));
    EXPECT_EQ(FaultOf("/dev/null"), "");
}

}  // namespace
}  // namespace vorex::host_test
