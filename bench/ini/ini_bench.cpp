// INI store benchmark: open and save throughput on a generated file of about
// 20 MB, read latency on a small and a large store, and the same file loaded
// by the readers a user would otherwise pick, each as a ratio to ours.
//
//   bench/run.sh            (or build-bench/bench/ini/ini [--cpu] [--keep] [dir])
#include <wxsupport/config/inifile.h>
#include <wxsupport/config/wxinifile.h>

#include <wx/fileconf.h>
#include <wx/init.h>
#include <wx/log.h>

#ifdef HAVE_INIH
#include <ini.h>
#endif
#ifdef HAVE_SIMPLEINI
#define SI_NO_CONVERSION
#include <SimpleIni.h>
#endif

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

double seconds(Clock::duration d) {
    return std::chrono::duration<double>(d).count();
}

// With --cpu, times are the process's CPU time (user and system) rather than
// wall-clock time: steadier on a machine that others are using.
bool g_cpu = false;

double now() {
    if (g_cpu) {
        timespec ts;
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
        return static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) * 1e-9;
    }
    return seconds(Clock::now().time_since_epoch());
}

// Best of n runs of f, in seconds.
double best(int n, const std::function<void()>& f) {
    double b = 1e100;
    for (int i = 0; i < n; ++i) {
        double t0 = now();
        f();
        b = std::min(b, now() - t0);
    }
    return b;
}

const int kSections = 100000;
const int kKeysPerSection = 10;

std::string sectionName(int s) {
    return "Section" + std::to_string(s);
}
std::string keyName(int k) {
    return "key_" + std::to_string(k);
}

// About 20 MB: 100,000 sections of 10 keys, a comment now and then.
std::string generate() {
    std::mt19937 rng(42);
    std::string out;
    out.reserve(21u << 20);
    for (int s = 0; s < kSections; ++s) {
        if (s % 10 == 0)
            out += "; group " + std::to_string(s / 10) + "\n";
        out += "[" + sectionName(s) + "]\n";
        for (int k = 0; k < kKeysPerSection; ++k) {
            out += keyName(k);
            out += " = ";
            unsigned n = 4 + rng() % 14;
            for (unsigned i = 0; i < n; ++i)
                out += static_cast<char>('a' + rng() % 26);
            out += '\n';
        }
        out += '\n';
    }
    return out;
}

void writeFile(const std::string& path, const std::string& bytes) {
    FILE* f = std::fopen(path.c_str(), "wb");
    if (!f || std::fwrite(bytes.data(), 1, bytes.size(), f) != bytes.size() || std::fclose(f)) {
        std::perror(path.c_str());
        std::exit(1);
    }
}

struct Query {
    std::string sec, key;
};

// ns per read_string over the queries, best of three passes.
// The same reads as a host makes them, through wxIniFile::ReadString (name
// conversion, the default's copy and the decoding of the value included).
double wxReadLatency(const wxIniFile& ini, const std::vector<Query>& qs) {
    std::vector<std::pair<wxString, wxString>> names;
    names.reserve(qs.size());
    for (const Query& q : qs)
        names.emplace_back(wxString::FromUTF8(q.sec.c_str()), wxString::FromUTF8(q.key.c_str()));
    const wxString def;
    volatile size_t sink = 0;
    double t = best(3, [&] {
        size_t sum = 0;
        for (const auto& n : names)
            sum += ini.ReadString(n.first, n.second, def).length();
        sink = sink + sum;
    });
    return t * 1e9 / static_cast<double>(qs.size());
}

double readLatency(inifile h, const std::vector<Query>& qs) {
    volatile size_t sink = 0;
    double t = best(3, [&] {
        size_t sum = 0;
        for (const Query& q : qs)
            sum += static_cast<unsigned char>(
                inifile_read_string(h, q.sec.c_str(), q.key.c_str(), "")[0]);
        sink = sink + sum;
    });
    return t * 1e9 / static_cast<double>(qs.size());
}

} // namespace

int main(int argc, char** argv) {
    wxInitializer init;
    wxLog::EnableLogging(false);
    std::string dir = "/tmp";
    bool keep = false;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--keep") == 0)
            keep = true;
        else if (std::strcmp(argv[i], "--cpu") == 0)
            g_cpu = true;
        else
            dir = argv[i];
    }
    std::string path = dir + "/vesk-bench-" + std::to_string(getpid()) + ".ini";
    std::string saved = path + ".saved";
    std::string text = generate();
    writeFile(path, text);
    double mb = static_cast<double>(text.size()) / 1e6;
    std::printf("file: %s, %.1f MB, %d sections of %d keys; %s time, best of several runs\n",
                path.c_str(), mb, kSections, kKeysPerSection, g_cpu ? "CPU" : "wall-clock");

    // Open: a fresh handle each run, so that its freeing isn't counted.
    std::vector<inifile> handles;
    double tOpen = best(5, [&] {
        inifile h = inifile_new();
        pdError* e = nullptr;
        if (inifile_open(h, path.c_str(), &e) != 0) {
            std::printf("open failed: %s: %s\n", pderror_region(e), pderror_message(e));
            std::exit(1);
        }
        handles.push_back(h);
    });
    inifile big = handles.back();
    handles.pop_back();
    for (inifile h : handles)
        inifile_delete(h);
    handles.clear();
    std::printf("open:  %7.1f ms  %7.1f MB/s (a section's keys are parsed on its first use)\n",
                tOpen * 1e3, mb / tOpen);

    // Open and then one read in every section, which parses all of it: what
    // a program that reads the whole file pays.
    std::vector<std::string> sectionNames;
    for (int s = 0; s < kSections; ++s)
        sectionNames.push_back(sectionName(s));
    double tFull = best(3, [&] {
        inifile h = inifile_new();
        pdError* e = nullptr;
        if (inifile_open(h, path.c_str(), &e) != 0)
            std::exit(1);
        for (const std::string& s : sectionNames)
            inifile_read_string(h, s.c_str(), "key_0", "");
        handles.push_back(h);
    });
    for (inifile h : handles)
        inifile_delete(h);
    handles.clear();
    std::printf("open + a read in every section: %7.1f ms  %7.1f MB/s\n", tFull * 1e3, mb / tFull);

    double tSave = best(3, [&] {
        pdError* e = nullptr;
        if (inifile_save(big, saved.c_str(), &e) != 0) {
            std::printf("save failed: %s: %s\n", pderror_region(e), pderror_message(e));
            std::exit(1);
        }
    });
    std::printf("save:  %7.1f ms  %7.1f MB/s (temporary file, fsync, rename%s)\n", tSave * 1e3,
                mb / tSave, g_cpu ? "; the wait for the disk is no CPU time" : "");

    // Reads: a million random lookups on ten keys and on a million.
    std::mt19937 rng(7);
    const size_t kReads = 1000000;
    std::vector<Query> smallQ, bigQ;
    smallQ.reserve(kReads);
    bigQ.reserve(kReads);
    inifile small = inifile_new();
    for (int k = 0; k < 10; ++k)
        inifile_write_string(small, "Section", keyName(k).c_str(), "value");
    for (size_t i = 0; i < kReads; ++i) {
        smallQ.push_back({"Section", keyName(static_cast<int>(rng() % 10))});
        bigQ.push_back({sectionName(static_cast<int>(rng() % kSections)),
                        keyName(static_cast<int>(rng() % kKeysPerSection))});
    }
    // First touch of every value (a copy on first read) is not what we time.
    for (const Query& q : bigQ)
        inifile_read_string(big, q.sec.c_str(), q.key.c_str(), "");
    double nsSmall = readLatency(small, smallQ);
    double nsBig = readLatency(big, bigQ);
    std::printf("read:  %7.1f ns on 10 keys, %7.1f ns on 1,000,000 keys in the file's 100,000 "
                "sections (ratio %.2f)\n",
                nsSmall, nsBig, nsBig / nsSmall);
    {
        wxIniFile smallIni;
        for (int k = 0; k < 10; ++k)
            smallIni.WriteString("Section", wxString::FromUTF8(keyName(k).c_str()), "value");
        wxIniFile bigIni(wxString::FromUTF8(path.c_str()));
        wxReadLatency(bigIni, bigQ); // first touch, as above
        const double wxSmall = wxReadLatency(smallIni, smallQ);
        const double wxBig = wxReadLatency(bigIni, bigQ);
        std::printf("wxIniFile::ReadString: %7.1f ns on 10 keys, %7.1f ns on 1,000,000 keys "
                    "(ratio %.2f)\n",
                    wxSmall, wxBig, wxBig / wxSmall);
    }
    inifile_delete(big);

    // The same number of keys written into one section: measures writes, and
    // reads without the section lookup's share of cache misses.
    inifile one = inifile_new();
    std::vector<std::string> oneKeys;
    oneKeys.reserve(kReads);
    for (size_t i = 0; i < kReads; ++i)
        oneKeys.push_back("key" + std::to_string(i));
    double t0 = now();
    for (const std::string& k : oneKeys)
        inifile_write_string(one, "Section", k.c_str(), "value");
    double tWrite = now() - t0;
    std::vector<Query> oneQ;
    oneQ.reserve(kReads);
    for (size_t i = 0; i < kReads; ++i)
        oneQ.push_back({"Section", oneKeys[rng() % oneKeys.size()]});
    double nsOne = readLatency(one, oneQ);
    std::printf("write: %7.1f ns per new key (1,000,000 into one section)\n",
                tWrite * 1e9 / static_cast<double>(kReads));
    std::printf("read:  %7.1f ns on 1,000,000 keys in one section (ratio %.2f)\n", nsOne,
                nsOne / nsSmall);
    inifile_delete(one);
    inifile_delete(small);

    std::printf("peers, open time as a multiple of ours (higher: we are faster):\n");
#ifdef HAVE_INIH
    {
        double t = best(3, [&] {
            size_t count = 0;
            ini_parse(
                path.c_str(),
                [](void* user, const char*, const char*, const char*) -> int {
                    ++*static_cast<size_t*>(user);
                    return 1;
                },
                &count);
        });
        std::printf("  inih (parse only):  %8.1f ms  %6.2fx  (%.2fx of open + reads)\n", t * 1e3,
                    t / tOpen, t / tFull);
    }
#else
    std::printf("  inih: not installed (libinih-dev), skipped\n");
#endif
#ifdef HAVE_SIMPLEINI
    {
        double t = best(3, [&] {
            CSimpleIniA ini;
            ini.SetUnicode(true);
            ini.SetMultiKey(false);
            ini.LoadFile(path.c_str());
        });
        std::printf("  SimpleIni:          %8.1f ms  %6.2fx  (%.2fx of open + reads)\n", t * 1e3,
                    t / tOpen, t / tFull);
    }
#else
    std::printf("  SimpleIni: not installed (libsimpleini-dev), skipped\n");
#endif
    {
        double t = best(1, [&] {
            wxFileConfig cfg(wxEmptyString, wxEmptyString, wxString::FromUTF8(path.c_str()),
                             wxEmptyString, wxCONFIG_USE_LOCAL_FILE);
        });
        std::printf("  wxFileConfig:       %8.1f ms  %6.2fx  (%.2fx of open + reads)\n", t * 1e3,
                    t / tOpen, t / tFull);
    }
    if (!keep) {
        std::remove(path.c_str());
        std::remove(saved.c_str());
    }
    return 0;
}
