// Stands in for libFuzzer in ordinary builds: gives each file named on the command line, or found in a folder named
// there, to the target.

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void replay(const boost::filesystem::path& file) {
    boost::filesystem::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argumentCount, char** arguments) {
    int replayed = 0;
    for (int index = 1; index < argumentCount; ++index) {
        const boost::filesystem::path path(arguments[index]);
        if (!boost::filesystem::is_directory(path)) {
            replay(path);
            ++replayed;
            continue;
        }
        for (const auto& entry : boost::filesystem::directory_iterator(path)) {
            replay(entry.path());
            ++replayed;
        }
    }
    std::printf("%d inputs replayed\n", replayed);
    return replayed > 0 ? 0 : 1;
}
