#include <gtest/gtest.h>

#include <windows.h>

#include <vector>

#include "tests/contract/ContractTest.h"
#include "tests/windows/Command.h"
#include "win32/machine/Wide.h"

/// What the registry interface leaves in the registry, byte for byte, and what it makes of bytes that others left
/// there.
namespace marlok::test {
namespace {

using Bytes = std::vector<unsigned char>;

class RegistryBytesTest : public ContractTest {
 protected:
    void SetUp() override {
        ASSERT_EQ(machine.registry.CreateKey(keyPath, key), error::success);
        ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, win32::ToWide(keyPath).c_str(), 0, KEY_ALL_ACCESS, &raw), 0);
    }

    void TearDown() override { RegCloseKey(raw); }

    Bytes Stored(const wchar_t* name) {
        DWORD size = 0;
        EXPECT_EQ(RegQueryValueExW(raw, name, nullptr, nullptr, nullptr, &size), 0);
        Bytes bytes(size + 1);
        EXPECT_EQ(RegQueryValueExW(raw, name, nullptr, nullptr, bytes.data(), &size), 0);
        bytes.resize(size);
        return bytes;
    }

    void Store(const wchar_t* name, DWORD type, const Bytes& bytes) {
        Bytes guarded = bytes;
        guarded.insert(guarded.end(), {0xFF, 0xFF});  // a zero behind the data would be stored with it
        EXPECT_EQ(RegSetValueExW(raw, name, 0, type, guarded.data(), static_cast<DWORD>(bytes.size())), 0);
    }

    RegistryValue Read(const std::string& name) {
        RegistryValue value;
        EXPECT_EQ(key->QueryValue(name, value), error::success) << name;
        return value;
    }

    const std::string keyPath = contract->ScratchKey();
    std::unique_ptr<RegistryKey> key;
    HKEY raw = nullptr;
};

TEST_F(RegistryBytesTest, AStringIsStoredWithExactlyTheGivenTerminator) {
    ASSERT_EQ(key->SetValue("with", {registrytype::string, std::string("a\xC3\xA4\0", 4)}), error::success);
    EXPECT_EQ(Stored(L"with"), (Bytes{'a', 0, 0xE4, 0, 0, 0}));
    ASSERT_EQ(key->SetValue("without", {registrytype::string, "ab"}), error::success);
    EXPECT_EQ(Stored(L"without"), (Bytes{'a', 0, 'b', 0}));
    ASSERT_EQ(key->SetValue("empty", {registrytype::string, ""}), error::success);
    EXPECT_EQ(Stored(L"empty"), Bytes{});
    ASSERT_EQ(key->SetValue("many", {registrytype::multiString, std::string("a\0b\0\0", 5)}), error::success);
    EXPECT_EQ(Stored(L"many"), (Bytes{'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0}));
}

TEST_F(RegistryBytesTest, OtherTypesAreStoredAsTheyStand) {
    ASSERT_EQ(key->SetValue("number", {registrytype::dword, std::string("\x01\x02\x03\x04", 4)}), error::success);
    EXPECT_EQ(Stored(L"number"), (Bytes{1, 2, 3, 4}));
    ASSERT_EQ(key->SetValue("bytes", {registrytype::binary, std::string("\0\xFF\x80", 3)}), error::success);
    EXPECT_EQ(Stored(L"bytes"), (Bytes{0, 0xFF, 0x80}));
}

TEST_F(RegistryBytesTest, DataWithoutTerminatorComesBackWithoutOne) {
    Store(L"cut", REG_SZ, {'a', 0, 'b', 0});
    EXPECT_EQ(Read("cut").data, "ab");
    Store(L"whole", REG_SZ, {'a', 0, 'b', 0, 0, 0});
    EXPECT_EQ(Read("whole").data, std::string("ab\0", 3));
}

TEST_F(RegistryBytesTest, HalfACharacterAtTheEndCountsAsOne) {
    Store(L"odd", REG_SZ, {'a', 0, 'b'});
    EXPECT_EQ(Read("odd").data, "ab");
    Store(L"one", REG_EXPAND_SZ, {0xE9});
    EXPECT_EQ(Read("one").data, "\xC3\xA9");
    EXPECT_EQ(Read("one").type, registrytype::expandString);
    Store(L"nothing", REG_SZ, {});
    EXPECT_EQ(Read("nothing").data, "");
}

TEST_F(RegistryBytesTest, LoneSurrogatesSurvive) {
    Store(L"surrogate", REG_SZ, {'a', 0, 0x3D, 0xD8, 'b', 0, 0, 0});
    const RegistryValue value = Read("surrogate");
    EXPECT_EQ(value.data, std::string("a\xED\xA0\xBD"
                                      "b\0",
                                      6));
    ASSERT_EQ(key->SetValue("copy", value), error::success);
    EXPECT_EQ(Stored(L"copy"), Stored(L"surrogate"));
}

TEST_F(RegistryBytesTest, ValuesOfAnySizeAreListed) {
    const std::string name(16383, 'n');
    const std::string big(300000, 'x');
    ASSERT_EQ(key->SetValue(name, {registrytype::binary, big}), error::success);
    std::string listed;
    RegistryValue value;
    ASSERT_EQ(key->EnumValue(0, listed, value), error::success);
    EXPECT_EQ(listed, name);
    EXPECT_EQ(value.data, big);
    EXPECT_EQ(key->EnumValue(1, listed, value), error::noMoreItems);
}

TEST_F(RegistryBytesTest, RegistryToolAndProgramReadEachOther) {
    ASSERT_EQ(RunCommand(L"reg add \"HKCU\\" + win32::ToWide(keyPath) + L"\" /v Tool /t REG_SZ /d \"D:\\Mäx\" /f").code,
              0);
    EXPECT_EQ(Read("Tool").data, std::string("D:\\M\xC3\xA4x\0", 8));
    ASSERT_EQ(key->SetValue("Program", {registrytype::string, std::string("E:\\Backup\0", 10)}), error::success);
    const CommandResult query = RunCommand(L"reg query \"HKCU\\" + win32::ToWide(keyPath) + L"\" /v Program");
    EXPECT_EQ(query.code, 0);
    EXPECT_NE(query.output.find("E:\\Backup"), std::string::npos) << query.output;
    EXPECT_NE(query.output.find("REG_SZ"), std::string::npos) << query.output;
}

/// Stored bytes of text within the first 128 characters.
std::string PlainText(const Bytes& stored) {
    std::string text;
    for (std::size_t i = 0; i < stored.size(); i += sizeof(wchar_t)) {
        text += static_cast<char>(stored[i]);
    }
    return text;
}

/// A file as the registry editor exports it: UTF-16 with a byte order mark.
std::string RegistryFile(const std::string& keyPath, const std::string& values) {
    const std::wstring text =
        win32::ToWide("\xEF\xBB\xBFWindows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\" + keyPath +
                      "]\r\n" + values + "\r\n");
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)};
}

TEST_F(RegistryBytesTest, AnImportedFileMayHoldDataOfAnyShape) {
    Put(In("import.reg"), RegistryFile(keyPath,
                                       "\"Plain\"=\"C:\\\\Data\"\r\n"
                                       "\"Cut\"=hex(1):43,00,3a,00\r\n"
                                       "\"Odd\"=hex(1):43,00,3a\r\n"
                                       "\"Expand\"=hex(2):25,00,41,00,25,00,00,00\r\n"
                                       "\"Number\"=dword:00000102\r\n"));
    for (const wchar_t* importer : {L"reg import ", L"regedit /S "}) {
        ASSERT_EQ(RunCommand(importer + win32::ToWide("\"" + In("import.reg") + "\"")).code, 0U);
        EXPECT_EQ(Read("Plain").data, std::string("C:\\Data\0", 8));
        EXPECT_EQ(Read("Expand").data, std::string("%A%\0", 4));
        EXPECT_EQ(Read("Number").data, std::string("\x02\x01\0\0", 4));
        // Importers differ in what they make of text without terminator; what they stored is what is read.
        EXPECT_EQ(Read("Cut").data, PlainText(Stored(L"Cut")));
        EXPECT_EQ(Read("Odd").data, PlainText(Stored(L"Odd")));
        EXPECT_EQ(Read("Odd").data.front(), 'C');
        for (const char* name : {"Plain", "Odd", "Expand", "Number", "Cut"}) {
            EXPECT_EQ(key->DeleteValue(name), error::success) << name;
        }
    }
}

}  // namespace
}  // namespace marlok::test
