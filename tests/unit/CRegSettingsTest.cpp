#include "settings/CRegSettings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/RuntimeError.h"
#include "settings/BackupSettings.h"
#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

constexpr const char* root = R"(Software\Marlok Software\Fenwold)";

class CRegSettingsTest : public testing::Test {
 protected:
    void TearDown() override { machine.ExpectNoLeaks(); }

    /// The value as it is stored.
    RegistryValue Stored(const std::string& key, const std::string& name) {
        std::unique_ptr<RegistryKey> open;
        RegistryValue value;
        EXPECT_EQ(machine.registry.OpenKey(key, registryaccess::read, open), error::success) << key;
        if (open) {
            EXPECT_EQ(open->QueryValue(name, value), error::success) << name;
        }
        return value;
    }

    void Store(const std::string& section, const std::string& name, std::uint32_t type, const std::string& data) {
        std::unique_ptr<RegistryKey> open;
        ASSERT_EQ(machine.registry.CreateKey(std::string(root) + "\\" + section, open), error::success);
        ASSERT_EQ(open->SetValue(name, {type, data}), error::success);
    }

    bool KeyExists(const std::string& key) {
        std::unique_ptr<RegistryKey> open;
        return machine.registry.OpenKey(key, registryaccess::read, open) == error::success;
    }

    InMemoryMachine machine;
    CRegSettings settings{machine.registry, machine.system};
    BackupSettings backup{settings};
};

TEST_F(CRegSettingsTest, AStringIsStoredWithItsTerminatingZero) {
    EXPECT_TRUE(settings.SaveSetting(R"(Backups\Daily)", "SourcePath2", R"(C:\Data)"));
    const RegistryValue value = Stored(std::string(root) + R"(\Backups\Daily)", "SourcePath2");
    EXPECT_EQ(value.type, registrytype::string);
    EXPECT_EQ(value.data, std::string("C:\\Data\0", 8));
    EXPECT_EQ(settings.GetSetting(R"(Backups\Daily)", "SourcePath2", "0"), R"(C:\Data)");
}

TEST_F(CRegSettingsTest, MissingKeyMissingValueAndEmptyString) {
    EXPECT_EQ(settings.GetSetting("None", "Value", "fallback"), "fallback");
    settings.SaveSetting("Some", "Empty", "");
    EXPECT_EQ(settings.GetSetting("Some", "Value", "fallback"), "fallback");
    EXPECT_EQ(settings.GetSetting("Some", "Empty", "fallback"), "");
    EXPECT_EQ(Stored(std::string(root) + "\\Some", "Empty").data, std::string(1, '\0'));
}

TEST_F(CRegSettingsTest, AValueWithoutAnyByteGivesTheFallback) {
    Store("Some", "Void", registrytype::string, "");
    EXPECT_EQ(settings.GetSetting("Some", "Void", "fallback"), "fallback");
}

TEST_F(CRegSettingsTest, AValueWithoutTerminatorLosesItsLastCharacter) {
    Store("Some", "Cut", registrytype::string, "C:\\Data");
    EXPECT_EQ(settings.GetSetting("Some", "Cut", ""), "C:\\Dat");
    Store("Some", "Umlaut", registrytype::string, "C:\\Dat\u00E4");
    EXPECT_EQ(settings.GetSetting("Some", "Umlaut", ""), "C:\\Dat") << "a character, not a byte";
}

TEST_F(CRegSettingsTest, TheTypeIsNotLookedAt) {
    Store("Some", "Expand", registrytype::expandString, std::string("%x%\0", 4));
    Store("Some", "Number", registrytype::dword, std::string("\x41\x42\x00\x00", 4));
    EXPECT_EQ(settings.GetSetting("Some", "Expand", ""), "%x%");
    EXPECT_EQ(settings.GetSetting("Some", "Number", ""), std::string("AB\0", 3));
}

TEST_F(CRegSettingsTest, AStarIsTheUnnamedValue) {
    EXPECT_TRUE(settings.SaveSetting("Some", "*", "unnamed"));
    EXPECT_EQ(Stored(std::string(root) + "\\Some", "").data, std::string("unnamed\0", 8));
    EXPECT_EQ(settings.GetSetting("Some", "*", ""), "unnamed");
    EXPECT_TRUE(settings.DeleteSetting("Some", "*"));
    EXPECT_EQ(settings.GetSetting("Some", "*", "gone"), "gone");
}

TEST_F(CRegSettingsTest, TheEmptySectionIsTheApplicationsOwnKey) {
    EXPECT_TRUE(settings.SaveSetting("", "Value", "here"));
    EXPECT_EQ(Stored(root, "Value").data, std::string("here\0", 5));
}

TEST_F(CRegSettingsTest, DeletingAValueLeavesTheOthers) {
    settings.SaveSetting("Some", "A", "1");
    settings.SaveSetting("Some", "B", "2");
    EXPECT_TRUE(settings.DeleteSetting("Some", "A"));
    EXPECT_FALSE(settings.DeleteSetting("Some", "A"));
    EXPECT_EQ(settings.GetSetting("Some", "B", ""), "2");
    EXPECT_FALSE(settings.DeleteSetting("None", "A"));
}

TEST_F(CRegSettingsTest, ASectionWithKeysBelowItIsNotDeleted) {
    settings.SaveSetting("Target", "TargetPath2", R"(E:\Save)");
    settings.SaveSetting(R"(Target\Old)", "SourcePath2", R"(C:\Data)");
    EXPECT_FALSE(settings.DeleteSetting("Target", ""));
    EXPECT_EQ(settings.GetSetting("Target", "TargetPath2", "0"), R"(E:\Save)");
    EXPECT_TRUE(settings.DeleteSetting(R"(Target\Old)", ""));
    EXPECT_TRUE(settings.DeleteSetting("Target", ""));
    EXPECT_FALSE(KeyExists(std::string(root) + "\\Target"));
    EXPECT_FALSE(settings.DeleteSetting("Target", ""));
}

TEST_F(CRegSettingsTest, AllStringsOfASectionInTheSystemsOrder) {
    settings.SaveSetting("Some", "A", "one");
    Store("Some", "Number", registrytype::dword, std::string(4, '\1'));
    Store("Some", "Expand", registrytype::expandString, std::string("x\0", 2));
    settings.SaveSetting("Some", "*", "");
    settings.SaveSetting("Some", "B", "two");
    EXPECT_THAT(settings.GetAllSettings("Some"),
                UnorderedElementsAre(Pair("A", "one"), Pair("", ""), Pair("B", "two")));
    EXPECT_THAT(settings.GetAllSettings("None"), IsEmpty());
}

TEST_F(CRegSettingsTest, CompanyIsTrimmedAndRestored) {
    EXPECT_EQ(settings.Company(), "Marlok Software");
    settings.SetCompany("  Other Maker ");
    EXPECT_EQ(settings.Company(), "Other Maker");
    settings.SaveSetting("S", "V", "x");
    EXPECT_TRUE(KeyExists(R"(Software\Other Maker\Fenwold\S)"));
    settings.SetCompany("   ");
    EXPECT_EQ(settings.Company(), "");
    settings.SetCompany("");
    EXPECT_EQ(settings.Company(), "Marlok Software");
}

TEST_F(CRegSettingsTest, AnEmptyAppNameIsTheProductName) {
    EXPECT_EQ(settings.AppName(), "Fenwold");
    settings.SetAppName(" Name ");
    EXPECT_EQ(settings.AppName(), "Name");
    settings.SetAppName("");
    EXPECT_EQ(settings.AppName(), machine.system.ProductName());
}

TEST_F(CRegSettingsTest, ARefusedKeyReadsAsFallbackAndSavesNothing) {
    settings.SaveSetting("Some", "A", "1");
    machine.faults.FailWhen([](const Step&) { return error::accessDenied; });
    EXPECT_EQ(settings.GetSetting("Some", "A", "fallback"), "fallback");
    EXPECT_FALSE(settings.SaveSetting("Some", "A", "2"));
    EXPECT_FALSE(settings.DeleteSetting("Some", "A"));
    EXPECT_THAT(settings.GetAllSettings("Some"), IsEmpty());
    machine.faults.FailWhen(nullptr);
    EXPECT_EQ(settings.GetSetting("Some", "A", ""), "1");
}

TEST_F(CRegSettingsTest, AnEmptyStoreHasNoLocations) {
    EXPECT_THAT(backup.Locations(), IsEmpty());
    EXPECT_FALSE(backup.AnyLocation());
    EXPECT_EQ(backup.LocationAt(2), "0");
}

TEST_F(CRegSettingsTest, ListsStartAtTwo) {
    EXPECT_TRUE(backup.SaveLocations({R"(E:\A)", R"(E:\B)"}));
    EXPECT_EQ(settings.GetSetting("Target", "TargetPath1", "none"), "none");
    EXPECT_EQ(settings.GetSetting("Target", "TargetPath2", "none"), R"(E:\A)");
    EXPECT_EQ(settings.GetSetting("Target", "TargetPath3", "none"), R"(E:\B)");
    EXPECT_THAT(backup.Locations(), ElementsAre(Location(R"(E:\A)"), Location(R"(E:\B)")));
}

TEST_F(CRegSettingsTest, TheDrivePlaysNoPartInTheSourceList) {
    EXPECT_TRUE(backup.SaveSources(Location(R"(D:\Backups\Daily)"), {R"(C:\Data)"}));
    EXPECT_THAT(backup.Sources(Location(R"(E:\Backups\Daily)")), ElementsAre(R"(C:\Data)"));
    EXPECT_TRUE(backup.AnySource(Location(R"(E:\Backups\Daily)")));
    EXPECT_FALSE(backup.AnySource(Location(R"(E:\Backups)")));
}

TEST_F(CRegSettingsTest, AListEndsAtItsFirstGap) {
    settings.SaveSetting("Target", "TargetPath2", R"(E:\A)");
    settings.SaveSetting("Target", "TargetPath4", R"(E:\C)");
    EXPECT_THAT(backup.Locations(), ElementsAre(Location(R"(E:\A)")));
}

TEST_F(CRegSettingsTest, AZeroEndsAList) {
    EXPECT_TRUE(backup.SaveSources(Location(R"(E:\A)"), {R"(C:\1)", "0", R"(C:\3)"}));
    EXPECT_THAT(backup.Sources(Location(R"(E:\A)")), ElementsAre(R"(C:\1)"));
    EXPECT_TRUE(backup.SaveLocations({R"(E:\A)", "0", R"(E:\C)"}));
    EXPECT_EQ(settings.GetSetting("Target", "TargetPath3", "none"), "none") << "what follows is not written";
    EXPECT_TRUE(backup.SaveLocations({R"(E:\A)", "", R"(E:\C)"}));
    EXPECT_EQ(settings.GetSetting("Target", "TargetPath3", "none"), "none");
}

TEST_F(CRegSettingsTest, AShorterListLeavesNothingOfTheLongerOne) {
    EXPECT_TRUE(backup.SaveSources(Location(R"(E:\A)"), {R"(C:\1)", R"(C:\2)", R"(C:\3)"}));
    EXPECT_TRUE(backup.SaveSources(Location(R"(E:\A)"), {R"(C:\2)", R"(C:\3)"}));
    EXPECT_THAT(settings.GetAllSettings("A"),
                UnorderedElementsAre(Pair("SourcePath2", R"(C:\2)"), Pair("SourcePath3", R"(C:\3)")));
    EXPECT_TRUE(backup.SaveSources(Location(R"(E:\A)"), {}));
    EXPECT_FALSE(KeyExists(std::string(root) + "\\A"));
}

TEST_F(CRegSettingsTest, AShorterListLeavesNothingBehindItsEndWhereKeysBelowKeepTheSection) {
    EXPECT_TRUE(backup.SaveSources(Location(R"(E:\Save)"), {R"(C:\1)", R"(C:\2)", R"(C:\3)"}));
    EXPECT_TRUE(backup.SaveSources(Location(R"(E:\Save\Old)"), {R"(C:\x)"}));
    EXPECT_TRUE(backup.SaveSources(Location(R"(E:\Save)"), {R"(C:\9)"}));
    EXPECT_THAT(settings.GetAllSettings("Save"), UnorderedElementsAre(Pair("SourcePath2", R"(C:\9)")))
        << "a source that was taken off the list would be saved for ever";
    EXPECT_THAT(settings.GetAllSettings(R"(Save\Old)"), UnorderedElementsAre(Pair("SourcePath2", R"(C:\x)")));
}

TEST_F(CRegSettingsTest, AListThatCannotBeStoredIsTold) {
    machine.registry.MakeReadOnly(std::string(root) + "\\A");
    EXPECT_FALSE(backup.SaveSources(Location(R"(E:\A)"), {R"(C:\1)"}));
    EXPECT_TRUE(backup.SaveSources(Location(R"(E:\B)"), {R"(C:\1)"}));
}

TEST_F(CRegSettingsTest, NumbersHaveNoLeadingZeros) {
    std::vector<std::string> many(12, R"(C:\x)");
    EXPECT_TRUE(backup.SaveSources(Location(R"(E:\A)"), many));
    EXPECT_EQ(settings.GetSetting("A", "SourcePath10", "none"), R"(C:\x)");
    EXPECT_EQ(backup.Sources(Location(R"(E:\A)")).size(), 12U);
}

TEST_F(CRegSettingsTest, TheCounterOfAListIsSixteenBitsWide) {
    machine.faults.KeepJournal(false);
    std::vector<std::string> many(32'765, "x");
    EXPECT_TRUE(backup.SaveSources(Location(R"(E:\A)"), many));
    EXPECT_EQ(backup.Sources(Location(R"(E:\A)")).size(), 32'765U);
    settings.SaveSetting("A", "SourcePath32767", "x");
    try {
        static_cast<void>(backup.Sources(Location(R"(E:\A)")));
        FAIL() << "no overflow";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number(), runtimeerror::overflow);
    }
}

}  // namespace
}  // namespace marlok::test
