#include <gtest/gtest.h>

#include <utility>

#include "tests/contract/ContractMachine.h"
#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

/// A handle of another program.
class HeldHandle : public ContractMachine::Held {
 public:
    explicit HeldHandle(Handle handle) : handle_(std::move(handle)) {}

 private:
    Handle handle_;
};

/// What else another program does with a file, wherever its name is by the end.
class HeldFile : public ContractMachine::Held {
 public:
    HeldFile(InMemoryMachine& machine, const std::string& path)
        : node_(machine.disk.Locate(path, InMemoryDisk::Follow::yes).node) {}
    ~HeldFile() override { node_->users.RemoveHolds(); }

 private:
    NodePtr node_;
};

/// The contract on the in-memory machine.
class InMemoryContractMachine : public ContractMachine {
 public:
    Machine& machine() override { return machine_.machine(); }

    std::string ScratchFolder() override {
        machine_.Seed({{R"(C:\Scratch\Test\)"}});
        return R"(C:\Scratch\Test)";
    }

    std::string ScratchKey() override { return R"(Software\Scratch\Test)"; }

    bool MakeFolderLink(const std::string& path, const std::string& target) override {
        machine_.MakeLink(path, target);
        return true;
    }

    std::unique_ptr<Held> Hold(const std::string& path, Use use) override {
        const NodePtr node = machine_.disk.Locate(path, InMemoryDisk::Follow::yes).node;
        const bool can = node != nullptr && machine_.disk.CheckUse(*node, use) == error::success;
        return can ? std::make_unique<HeldHandle>(Handle(node, use)) : nullptr;
    }

    std::unique_ptr<Held> Map(const std::string& path) override {
        machine_.Map(path);
        return std::make_unique<HeldFile>(machine_, path);
    }

    void MakeProgram(const std::string& path) override { machine_.Write(path, "MZ"); }

    std::unique_ptr<Held> Run(const std::string& path) override {
        machine_.RunFrom(path);
        return std::make_unique<HeldFile>(machine_, path);
    }

    bool MakeFileLink(const std::string& path, const std::string& target) override {
        machine_.MakeFileLink(path, target);
        return true;
    }

    std::string OtherVolume() override {
        machine_.Seed({{R"(V:\Test\)"}});
        return R"(V:\Test)";
    }

    void EnterFolder(const std::string& path) override { machine_.process.SetCurrentFolder(path); }

    bool CanRemoveLinks() override { return machine_.files.CanRemoveLinks(); }
    bool KeepsOddNames() override { return true; }
    std::size_t LongestPath() override { return 32000; }

 private:
    InMemoryMachine machine_;
};

}  // namespace

std::unique_ptr<ContractMachine> MakeContractMachine() {
    return std::make_unique<InMemoryContractMachine>();
}

}  // namespace marlok::test
