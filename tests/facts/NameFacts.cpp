// Narrow names: the code page, and what calls answer for names beyond ASCII.
#include "Facts.h"
#include "OwnProcess.h"

#include "base/Executables.h"
#include "base/TextEncoding.h"
#include "support/TemporaryFolder.h"
#include "support/versions/VersionSamples.h"

#include <psapi.h>

namespace brisk::facts {

namespace {

// A program in a folder whose name takes more bytes than units.
struct ForeignProgram {
    testing::TemporaryFolder folder;
    std::filesystem::path path = folder / L"J\u00FCrgen \u6E38\u620F" / L"Spiel.exe";
    OwnProcess process{install(), L"--sleep"};

    std::filesystem::path install() const {
        std::filesystem::create_directories(path.parent_path());
        std::filesystem::copy_file(ownProgram(), path);
        return path;
    }
};

Answer codePage() {
    return holdsIf(GetACP() == CP_UTF8, "code page " + std::to_string(GetACP()));
}

Answer moduleName() {
    const ForeignProgram program;
    ProcessImage image;
    waitUntil([&] { return !(image = getProcessImage(program.process.id())).fileName.empty(); });
    const bool isWhole =
        image.fileName == "Spiel.exe" && image.directory == toNarrow(program.path.parent_path().native());
    return holdsIf(isWhole, image.directory + "\\" + image.fileName);
}

Answer moduleNameLength() {
    const ForeignProgram program;
    const UniqueHandle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, program.process.id()));
    char name[MAX_PATH] = "";
    DWORD length = 0;
    waitUntil([&] { return (length = K32GetModuleFileNameExA(process.get(), nullptr, name, MAX_PATH)) != 0; });
    const std::size_t units = program.path.native().size();
    const std::size_t bytes = toNarrow(program.path.native()).size();
    return holdsIf(length == units, "the answer is " + std::to_string(length) + " for " + std::to_string(units) +
                                        " units, " + std::to_string(bytes) + " bytes");
}

// The name as the launcher spells it, not as it stands on the disk.
Answer moduleNameSpelling() {
    const ForeignProgram program;
    const std::filesystem::path shouted = program.path.parent_path() / L"SPIEL.EXE";
    const OwnProcess second(shouted, L"--sleep");
    ProcessImage image;
    waitUntil([&] { return !(image = getProcessImage(second.id())).fileName.empty(); });
    return holdsIf(image.fileName == "SPIEL.EXE", "Spiel.exe started as SPIEL.EXE is " + image.fileName);
}

Answer companyName() {
    std::string company;
    while (company.size() < std::size_t{3} * 480) {
        company += "\xE6\xB8\xB8\xE6\x88\x8F";
    }
    const std::string read = getFileProperties(versionSample("long-characters")).companyName;
    return holdsIf(read == company, std::to_string(read.size()) + " bytes of " + std::to_string(company.size()));
}

} // namespace

std::vector<Fact> nameFacts() {
    return {{"code-page", codePage},
            {"module-name", moduleName},
            {"module-name-length", moduleNameLength},
            {"module-name-spelling", moduleNameSpelling},
            {"company-name", companyName}};
}

} // namespace brisk::facts
