// Stand-in for "xterm ... -S<pts>/<fd>", first on PATH as xterm in the console
// tests: writes its pid and arguments to $STANDIN_DIR, announces a window id
// as xterm does, and copies what the program writes to $STANDIN_DIR/output
// until the console hangs up.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <unistd.h>

int main(int argc, char** argv) {
    const std::string dir = getenv("STANDIN_DIR") ? getenv("STANDIN_DIR") : ".";
    FILE* args = std::fopen((dir + "/args").c_str(), "w");
    int fd = -1;
    for (int i = 1; args && i < argc; ++i) {
        std::fprintf(args, "%s\n", argv[i]);
        if (std::strncmp(argv[i], "-S", 2) == 0 && std::strrchr(argv[i], '/'))
            fd = std::atoi(std::strrchr(argv[i], '/') + 1);
    }
    FILE* out = std::fopen((dir + "/output").c_str(), "wb");
    if (!args || !out || fd < 0)
        return 1;
    // Complete before the window id lets the console go on, so that a test
    // reading the file right after pd_console_create finds every line.
    std::fprintf(args, "pid %ld\n", static_cast<long>(getpid()));
    std::fclose(args);
    if (dprintf(fd, "%x\n", 4242) < 0)
        return 1;
    char buffer[4096];
    for (ssize_t n; (n = read(fd, buffer, sizeof buffer)) > 0; std::fflush(out))
        std::fwrite(buffer, 1, static_cast<size_t>(n), out);
    std::fclose(out);
    return 0;
}
