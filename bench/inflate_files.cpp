// inflate_files FROM TO FILE...: each FROM/FILE.zl inflated to TO/FILE in blocks of 64 KB, as the examples of
// zlib do it. The plain counterpart of unpacking a level.
#include <zlib.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kBlock = std::size_t{1} << 16;

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

bool InflateFile(const std::string& from, const std::string& to) {
    const File in(std::fopen(from.c_str(), "rb"), std::fclose);
    const File out(std::fopen(to.c_str(), "wb"), std::fclose);
    if (!in || !out) return false;
    std::vector<unsigned char> packed(kBlock), plain(kBlock);
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK) return false;
    int state = Z_OK;
    while (state == Z_OK) {
        stream.avail_in = static_cast<uInt>(std::fread(packed.data(), 1, kBlock, in.get()));
        stream.next_in = packed.data();
        if (stream.avail_in == 0) break;
        do {
            stream.next_out = plain.data();
            stream.avail_out = kBlock;
            state = inflate(&stream, Z_NO_FLUSH);
            if (std::fwrite(plain.data(), 1, kBlock - stream.avail_out, out.get()) !=
                kBlock - stream.avail_out)
                state = Z_ERRNO;
        } while (state == Z_OK && stream.avail_out == 0);
    }
    inflateEnd(&stream);
    return state == Z_STREAM_END;
}

} // namespace

int main(int argc, char** argv) {
    for (int i = 3; i < argc; ++i) {
        const std::string name = argv[i];
        if (!InflateFile(std::string(argv[1]) + "/" + name + ".zl", std::string(argv[2]) + "/" + name))
            return 1;
    }
    return 0;
}
