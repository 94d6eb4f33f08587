#include <map>

#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

using namespace std::string_literals;

class RegistryContract : public ContractTest {
 protected:
    void SetUp() override { ASSERT_EQ(registry.CreateKey(path, key), error::success); }

    void Set(const std::string& name, std::uint32_t type, const std::string& data) {
        ASSERT_EQ(key->SetValue(name, {type, data}), error::success) << name;
    }

    void ExpectValue(const std::string& name, std::uint32_t type, const std::string& data) {
        RegistryValue value;
        ASSERT_EQ(key->QueryValue(name, value), error::success) << name;
        EXPECT_EQ(value.type, type) << name;
        EXPECT_EQ(value.data, data) << name;
    }

    Registry& registry = machine.registry;
    std::string path = contract->ScratchKey();
    std::unique_ptr<RegistryKey> key;
};

TEST_F(RegistryContract, AMissingKeyIsFileNotFound) {
    std::unique_ptr<RegistryKey> missing;
    EXPECT_EQ(registry.OpenKey(path + "\\absent", registryaccess::read, missing), error::fileNotFound);
    EXPECT_EQ(missing, nullptr);
}

TEST_F(RegistryContract, CreatingAKeyCreatesThoseAboveIt) {
    std::unique_ptr<RegistryKey> deep;
    ASSERT_EQ(registry.CreateKey(path + "\\A\\B\\C", deep), error::success);
    std::unique_ptr<RegistryKey> middle;
    EXPECT_EQ(registry.OpenKey(path + "\\A\\B", registryaccess::read, middle), error::success);
}

TEST_F(RegistryContract, CreatingAnExistingKeyOpensIt) {
    Set("name", registrytype::string, "kept\0"s);
    ASSERT_EQ(registry.CreateKey(path, key), error::success);
    ExpectValue("name", registrytype::string, "kept\0"s);
}

TEST_F(RegistryContract, KeysAreFoundWhateverTheirCase) {
    Set("name", registrytype::string, "x\0"s);
    std::unique_ptr<RegistryKey> created;
    ASSERT_EQ(registry.CreateKey(path + "\\MixedÄ", created), error::success);
    ASSERT_EQ(registry.OpenKey(path + "\\mIXEDä", registryaccess::all, created), error::success);
}

TEST_F(RegistryContract, ValuesAreFoundWhateverTheirCase) {
    Set("TargetPath2", registrytype::string, "a\0"s);
    Set("TARGETPATH2", registrytype::string, "b\0"s);
    ExpectValue("targetpath2", registrytype::string, "b\0"s);
    std::string name;
    RegistryValue value;
    EXPECT_EQ(key->EnumValue(1, name, value), error::noMoreItems);
}

TEST_F(RegistryContract, StringsComeBackExactlyAsStored) {
    Set("terminated", registrytype::string, "text\0"s);
    Set("bare", registrytype::string, "text");
    Set("empty", registrytype::string, "");
    Set("only a zero", registrytype::string, "\0"s);
    Set("zero inside", registrytype::string, "a\0b\0"s);
    ExpectValue("terminated", registrytype::string, "text\0"s);
    ExpectValue("bare", registrytype::string, "text");
    ExpectValue("empty", registrytype::string, "");
    ExpectValue("only a zero", registrytype::string, "\0"s);
    ExpectValue("zero inside", registrytype::string, "a\0b\0"s);
}

TEST_F(RegistryContract, StringsOfEveryScriptComeBack) {
    const std::string text = "Ünï Ελλ Рус 日本 🎉\0"s;
    Set("text", registrytype::string, text);
    Set("Ключ 🎉", registrytype::string, text);
    ExpectValue("text", registrytype::string, text);
    ExpectValue("ключ 🎉", registrytype::string, text);
}

TEST_F(RegistryContract, UnpairedSurrogatesComeBack) {
    const std::string text = "C:\\odd \xED\xA0\xBD name\0"s;
    Set("text", registrytype::string, text);
    ExpectValue("text", registrytype::string, text);
}

TEST_F(RegistryContract, LongStringsComeBack) {
    const std::string text = std::string(20000, 'x') + '\0';
    Set("text", registrytype::string, text);
    ExpectValue("text", registrytype::string, text);
}

TEST_F(RegistryContract, OtherTypesComeBackByteForByte) {
    Set("binary", registrytype::binary, "\x00\xFF\x80 odd"s);
    Set("nothing", registrytype::binary, "");
    Set("dword", registrytype::dword, "\x01\x02\x03\x04");
    Set("expand", registrytype::expandString, "%PATH%\0"s);
    Set("multi", registrytype::multiString, "a\0b\0\0"s);
    ExpectValue("binary", registrytype::binary, "\x00\xFF\x80 odd"s);
    ExpectValue("nothing", registrytype::binary, "");
    ExpectValue("dword", registrytype::dword, "\x01\x02\x03\x04");
    ExpectValue("expand", registrytype::expandString, "%PATH%\0"s);
    ExpectValue("multi", registrytype::multiString, "a\0b\0\0"s);
}

TEST_F(RegistryContract, SettingReplacesDataAndType) {
    Set("v", registrytype::string, "a long text\0"s);
    Set("v", registrytype::binary, "ab");
    ExpectValue("v", registrytype::binary, "ab");
}

TEST_F(RegistryContract, TheUnnamedValueIsAValueLikeOthers) {
    RegistryValue value;
    EXPECT_EQ(key->QueryValue("", value), error::fileNotFound);
    Set("", registrytype::string, "unnamed\0"s);
    ExpectValue("", registrytype::string, "unnamed\0"s);
    EXPECT_EQ(key->DeleteValue(""), error::success);
    EXPECT_EQ(key->QueryValue("", value), error::fileNotFound);
}

TEST_F(RegistryContract, AMissingValueIsFileNotFound) {
    RegistryValue value;
    EXPECT_EQ(key->QueryValue("absent", value), error::fileNotFound);
    EXPECT_EQ(key->DeleteValue("absent"), error::fileNotFound);
}

TEST_F(RegistryContract, ADeletedValueIsGone) {
    Set("a", registrytype::string, "a\0"s);
    Set("b", registrytype::string, "b\0"s);
    EXPECT_EQ(key->DeleteValue("A"), error::success);
    RegistryValue value;
    EXPECT_EQ(key->QueryValue("a", value), error::fileNotFound);
    ExpectValue("b", registrytype::string, "b\0"s);
}

TEST_F(RegistryContract, EnumerationTellsEveryValueOnceAndEnds) {
    Set("SourcePath2", registrytype::string, "C:\\A\0"s);
    Set("SourcePath3", registrytype::string, "C:\\B\0"s);
    Set("", registrytype::string, "unnamed\0"s);
    std::map<std::string, std::string> found;
    std::string name;
    RegistryValue value;
    std::uint32_t index = 0;
    while (key->EnumValue(index, name, value) == error::success) {
        EXPECT_TRUE(found.emplace(name, value.data).second) << name;
        ++index;
    }
    EXPECT_EQ(key->EnumValue(index, name, value), error::noMoreItems);
    EXPECT_EQ(found, (std::map<std::string, std::string>{
                         {"SourcePath2", "C:\\A\0"s}, {"SourcePath3", "C:\\B\0"s}, {"", "unnamed\0"s}}));
}

TEST_F(RegistryContract, EnumerationOfAnEmptyKeyEndsAtOnce) {
    std::string name;
    RegistryValue value;
    EXPECT_EQ(key->EnumValue(0, name, value), error::noMoreItems);
}

TEST_F(RegistryContract, AKeyWithKeysBelowIsNotDeleted) {
    std::unique_ptr<RegistryKey> deep;
    ASSERT_EQ(registry.CreateKey(path + "\\A\\B", deep), error::success);
    deep.reset();
    EXPECT_EQ(key->DeleteKey("A"), error::accessDenied);
    EXPECT_EQ(key->DeleteKey("A\\B"), error::success);
    EXPECT_EQ(key->DeleteKey("a"), error::success);
    EXPECT_EQ(registry.OpenKey(path + "\\A", registryaccess::read, deep), error::fileNotFound);
}

TEST_F(RegistryContract, ADeletedKeyTakesItsValuesAlong) {
    std::unique_ptr<RegistryKey> below;
    ASSERT_EQ(registry.CreateKey(path + "\\A", below), error::success);
    ASSERT_EQ(below->SetValue("v", {registrytype::string, "x\0"s}), error::success);
    below.reset();
    ASSERT_EQ(key->DeleteKey("A"), error::success);
    ASSERT_EQ(registry.CreateKey(path + "\\A", below), error::success);
    RegistryValue value;
    EXPECT_EQ(below->QueryValue("v", value), error::fileNotFound);
}

TEST_F(RegistryContract, AMissingKeyCannotBeDeleted) {
    EXPECT_EQ(key->DeleteKey("absent"), error::fileNotFound);
}

TEST_F(RegistryContract, NoKeyDeletesItself) {
    EXPECT_EQ(key->DeleteKey(""), error::invalidParameter);
    std::unique_ptr<RegistryKey> again;
    EXPECT_EQ(registry.OpenKey(path, registryaccess::read, again), error::success);
}

TEST_F(RegistryContract, AKeyOpenedForReadingTakesNoValue) {
    Set("v", registrytype::string, "kept\0"s);
    std::unique_ptr<RegistryKey> reading;
    ASSERT_EQ(registry.OpenKey(path, registryaccess::read, reading), error::success);
    EXPECT_EQ(reading->SetValue("v", {registrytype::string, "changed\0"s}), error::accessDenied);
    EXPECT_EQ(reading->DeleteValue("v"), error::accessDenied);
    ExpectValue("v", registrytype::string, "kept\0"s);
}

TEST_F(RegistryContract, NamesWithAZeroCharacterAreRefused) {
    EXPECT_EQ(key->SetValue("a\0b"s, {registrytype::string, "x\0"s}), error::invalidName);
    std::unique_ptr<RegistryKey> other;
    EXPECT_EQ(registry.CreateKey(path + "\\a\0b"s, other), error::invalidName);
    EXPECT_EQ(registry.OpenKey(path + "\0b"s, registryaccess::read, other), error::invalidName);
    EXPECT_EQ(key->DeleteKey("a\0b"s), error::invalidName);
}

}  // namespace
}  // namespace marlok::test
