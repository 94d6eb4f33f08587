#include <gtest/gtest.h>

#include "tests/contract/ContractMachine.h"
#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

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
