#include <gtest/gtest.h>

#include "tests/machine/ForwardingFiles.h"
#include "tests/machine/ForwardingRegistry.h"
#include "tests/machine/ForwardingShell.h"
#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

TEST(ForwardingTest, EverythingReachesTheInnerServices) {
    InMemoryMachine memory;
    ForwardingFiles files(memory.files);
    ForwardingRegistry registry(memory.registry);
    ForwardingShell shell(memory.shell);
    std::unique_ptr<File> file;
    std::unique_ptr<FolderSearch> search;
    std::unique_ptr<RegistryKey> key;
    DirectoryEntry entry;
    std::string path;
    FileIdentity identity;
    EXPECT_EQ(files.CreateFolder("C:\\D"), error::success);
    EXPECT_EQ(files.Open("C:\\D\\a", OpenMode::createNew, file), error::success);
    file.reset();
    EXPECT_EQ(files.FindFirst("C:\\D\\a", search, entry), error::success);
    EXPECT_EQ(files.GetEntry("C:\\D\\a", entry), error::success);
    EXPECT_EQ(files.SetAttributes("C:\\D\\a", attribute::normal), error::success);
    EXPECT_EQ(files.FinalPath("c:\\d\\A", path), error::success);
    EXPECT_EQ(path, "C:\\D\\a");
    EXPECT_EQ(files.Identify("C:\\D", identity), error::success);
    EXPECT_EQ(files.Copy("C:\\D\\a", "C:\\D\\b", 0, {}), error::success);
    EXPECT_EQ(files.Move("C:\\D\\b", "C:\\D\\c", false), error::success);
    EXPECT_EQ(files.Replace("C:\\D\\a", "C:\\D\\c", "C:\\D\\b"), error::success);
    EXPECT_EQ(files.Delete("C:\\D\\b"), error::success);
    Volume volume;
    EXPECT_EQ(files.GetVolume("C:\\D", volume), error::success);
    EXPECT_EQ(volume.root, "C:\\");
    EXPECT_EQ(files.RemoveLink("C:\\D"), error::notSupported);
    EXPECT_EQ(files.RemoveFolder("C:\\D"), error::directoryNotEmpty);
    EXPECT_EQ(registry.CreateKey("Software\\X", key), error::success);
    EXPECT_EQ(registry.OpenKey("Software\\X", registryaccess::read, key), error::success);
    EXPECT_EQ(shell.DesktopFolder(), memory.shell.desktopFolder);
    EXPECT_NE(shell.Perform({ShellFileOperation::Kind::remove, "C:\\absent", "", 0}), 0);
    EXPECT_EQ(shell.SaveShortcut({"C:\\s.lnk", "C:\\D", 1, "", "", ""}), error::success);
}

}  // namespace
}  // namespace marlok::test
