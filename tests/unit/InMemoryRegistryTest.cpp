#include <gtest/gtest.h>

#include <map>

#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

using namespace std::string_literals;

TEST(InMemoryRegistryTest, SeedsAndLooks) {
    InMemoryMachine memory;
    memory.registry.SetString("Software\\X\\Target", "TargetPath2", "E:\\Save");
    memory.registry.SetRaw("Software\\X\\Target", "bare", registrytype::string, "no zero");
    EXPECT_EQ(memory.registry.Values("software\\x\\target"),
              (std::map<std::string, std::string>{{"TargetPath2", "E:\\Save"}, {"bare", "no zero"}}));
    ASSERT_NE(memory.registry.Value("Software\\X\\Target", "targetpath2"), nullptr);
    EXPECT_EQ(memory.registry.Value("Software\\X\\Target", "targetpath2")->data, "E:\\Save\0"s);
    EXPECT_EQ(memory.registry.Keys("Software\\X"), std::vector<std::string>{"Target"});
    EXPECT_FALSE(memory.registry.KeyExists("Software\\Y"));
    EXPECT_EQ(memory.faults.Steps(), 0U);
}

TEST(InMemoryRegistryTest, KeysCanBeDeniedOrReadOnly) {
    InMemoryMachine memory;
    Registry& registry = memory.machine().registry;
    memory.registry.SetString("Software\\X", "v", "kept");
    std::unique_ptr<RegistryKey> key;
    memory.registry.MakeReadOnly("Software\\X");
    EXPECT_EQ(registry.OpenKey("Software\\X", registryaccess::all, key), error::accessDenied);
    EXPECT_EQ(registry.OpenKey("Software\\X", registryaccess::read, key), error::success);
    EXPECT_EQ(registry.CreateKey("Software\\X\\New", key), error::accessDenied);
    memory.registry.Deny("Software\\X");
    EXPECT_EQ(registry.OpenKey("Software\\X", registryaccess::read, key), error::accessDenied);
    memory.registry.Allow("Software\\X");
    EXPECT_EQ(registry.OpenKey("Software\\X", registryaccess::all, key), error::success);
}

TEST(InMemoryRegistryTest, AKeyDeletedWhileOpenTakesNothing) {
    InMemoryMachine memory;
    std::unique_ptr<RegistryKey> above;
    std::unique_ptr<RegistryKey> key;
    ASSERT_EQ(memory.registry.CreateKey("Software", above), error::success);
    ASSERT_EQ(memory.registry.CreateKey("Software\\X", key), error::success);
    EXPECT_EQ(memory.registry.OpenKeys(), 2);
    ASSERT_EQ(above->DeleteKey("X"), error::success);
    EXPECT_NE(key->SetValue("v", {}), error::success);
    EXPECT_THROW(memory.ExpectNoLeaks(), std::logic_error);
}

TEST(InMemoryRegistryTest, EnumerationFollowsDeletions) {
    InMemoryMachine memory;
    for (const char* name : {"a", "b", "c", "d"}) {
        memory.registry.SetString("Software\\X", name, name);
    }
    std::unique_ptr<RegistryKey> key;
    ASSERT_EQ(memory.registry.CreateKey("Software\\X", key), error::success);
    std::string name;
    RegistryValue value;
    ASSERT_EQ(key->EnumValue(2, name, value), error::success);
    EXPECT_EQ(name, "c");
    ASSERT_EQ(key->DeleteValue("b"), error::success);
    ASSERT_EQ(key->EnumValue(2, name, value), error::success);
    EXPECT_EQ(name, "d");
    ASSERT_EQ(key->EnumValue(0, name, value), error::success);
    EXPECT_EQ(name, "a");
    ASSERT_EQ(key->EnumValue(1, name, value), error::success);
    EXPECT_EQ(name, "c");
    EXPECT_EQ(key->EnumValue(3, name, value), error::noMoreItems);
}

}  // namespace
}  // namespace marlok::test
