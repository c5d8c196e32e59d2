// Checks shared libraries and loads them.
#include "host/documents/PackageFile.h"

#include <dlfcn.h>
#include <elf.h>
#include <fmt/format.h>

#include <bit>
#include <cstring>
#include <fstream>
#include <vector>

#include "platform/core/system/Files.h"

namespace wrenfold {

namespace {

[[noreturn]] void Refuse(const std::string& fileName, const std::string& reason) {
  throw EPackageError(
      fmt::format("The package {} cannot be loaded: {}. Expected a shared library for this machine "
                  "with the entry \"Register\".",
                  fileName, reason));
}

#if defined(__x86_64__)
constexpr int ThisMachine = EM_X86_64;
#elif defined(__aarch64__)
constexpr int ThisMachine = EM_AARCH64;
#elif defined(__riscv)
constexpr int ThisMachine = EM_RISCV;
#else
constexpr int ThisMachine = EM_NONE;  // the loader tells
#endif

const char* HeaderFault(const Elf64_Ehdr& header) {
  if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) return "it is no library";
  if (header.e_ident[EI_CLASS] != ELFCLASS64) return "it is no 64-bit library";
  const int byteOrder = std::endian::native == std::endian::little ? ELFDATA2LSB : ELFDATA2MSB;
  if (header.e_ident[EI_DATA] != byteOrder) return "its byte order is another machine's";
  if (header.e_type != ET_DYN) return "it is a program or an object file";
  if (ThisMachine != EM_NONE && header.e_machine != ThisMachine)
    return "it is made for another kind of processor";
  if (header.e_phentsize != sizeof(Elf64_Phdr) || header.e_phnum == 0)
    return "its list of segments is damaged";
  return nullptr;
}

}  // namespace

void CheckPackageFile(const std::string& fileName) {
  const std::int64_t size = FileSize(fileName);
  if (size < 0) Refuse(fileName, "there is no such file");
  std::ifstream file(fileName, std::ios::binary);
  Elf64_Ehdr header{};
  file.read(reinterpret_cast<char*>(&header), sizeof header);
  if (!file) Refuse(fileName, "it cannot be read, or is too short for a library");
  if (const char* fault = HeaderFault(header)) Refuse(fileName, fault);
  std::vector<Elf64_Phdr> segments(header.e_phnum);
  file.seekg(static_cast<std::streamoff>(header.e_phoff));
  file.read(reinterpret_cast<char*>(segments.data()),
            static_cast<std::streamsize>(segments.size() * sizeof(Elf64_Phdr)));
  if (!file) Refuse(fileName, "it ends inside its list of segments");
  const auto whole = static_cast<std::uint64_t>(size);
  for (const Elf64_Phdr& segment : segments)
    if (segment.p_offset > whole || segment.p_filesz > whole - segment.p_offset)
      Refuse(fileName, fmt::format("it was cut off: a segment reaches to byte {} of {}",
                                   segment.p_offset + segment.p_filesz, whole));
}

TPackage::TPackage(const std::string& fileName) : FFileName(fileName) {
  CheckPackageFile(fileName);
  // A bare name would be looked for among the system's libraries.
  const std::string path = fileName.find('/') == std::string::npos ? "./" + fileName : fileName;
  FHandle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (FHandle == nullptr) Refuse(fileName, dlerror());
  FRegister = reinterpret_cast<TRegister>(dlsym(FHandle, "Register"));
  if (FRegister != nullptr) return;
  dlclose(FHandle);
  Refuse(fileName, "it has no entry of that name");
}

TPackage::~TPackage() {
  dlclose(FHandle);
}

}  // namespace wrenfold
