// Stand-in for "xterm ... -S<pts>/<fd>" in the console tests, put first on
// PATH under the name xterm. It records its arguments, announces a window id
// as xterm does, and copies everything the program writes to a file until the
// console hangs up. Once the text of STANDIN_PROMPT has come, it types
// STANDIN_INPUT and a newline. With STANDIN_FAIL set it fails at once, as a
// terminal without a display would.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <unistd.h>

int main(int argc, char** argv) {
    const char* dir = getenv("STANDIN_DIR");
    if (!dir)
        return 2;
    const std::string base(dir);
    if (FILE* f = std::fopen((base + "/pid").c_str(), "w")) {
        std::fprintf(f, "%ld\n", static_cast<long>(getpid()));
        std::fclose(f);
    }
    int fd = -1;
    if (FILE* f = std::fopen((base + "/args").c_str(), "w")) {
        for (int i = 1; i < argc; ++i) {
            std::fprintf(f, "%s\n", argv[i]);
            if (std::strncmp(argv[i], "-S", 2) == 0) {
                const char* slash = std::strrchr(argv[i], '/');
                fd = slash ? std::atoi(slash + 1) : -1;
            }
        }
        std::fclose(f);
    }
    if (getenv("STANDIN_FAIL") || fd < 0)
        return 1;
    if (dprintf(fd, "%x\n", 4242) < 0)
        return 1;

    const char* prompt = getenv("STANDIN_PROMPT");
    const char* input = getenv("STANDIN_INPUT");
    FILE* out = std::fopen((base + "/output").c_str(), "wb");
    if (!out)
        return 1;
    std::string seen;
    char buffer[4096];
    for (;;) {
        const ssize_t n = read(fd, buffer, sizeof buffer);
        if (n <= 0)
            break; // the console hung up
        std::fwrite(buffer, 1, static_cast<size_t>(n), out);
        std::fflush(out);
        seen.append(buffer, static_cast<size_t>(n));
        if (prompt && input && seen.find(prompt) != std::string::npos) {
            dprintf(fd, "%s\n", input);
            prompt = nullptr;
        }
    }
    std::fclose(out);
    return 0;
}
