// INI store benchmark: open and save throughput on a generated file of about
// 36 MB (100,000 sections of 10 keys, values of about 25 characters), read
// latency on a small and a large store through the C interface, wxIniFile
// and wxFileConfig, a pointer chase that gives the cost of one dependent
// memory access, the peak memory of a process that opens the file, and the
// same file loaded by the readers a user would otherwise pick. Each target
// is printed with its figure and "met" or "missed". Times are CPU time
// (user and system) unless --wall is given; throughput is the best of 5.
//
//   ./run bench        (or build-bench/bench/ini/ini [--wall] [--keep] [dir])
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
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

double seconds(Clock::duration d) {
    return std::chrono::duration<double>(d).count();
}

// CPU time of the process (user and system) unless --wall: steadier than the
// wall clock on a machine that others are using.
bool g_cpu = true;

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

// About 36 MB: 100,000 sections of 10 keys with values of 18 to 32
// characters, a comment now and then.
std::string generate() {
    std::mt19937 rng(42);
    std::string out;
    out.reserve(40u << 20);
    for (int s = 0; s < kSections; ++s) {
        if (s % 10 == 0)
            out += "; group " + std::to_string(s / 10) + "\n";
        out += "[" + sectionName(s) + "]\n";
        for (int k = 0; k < kKeysPerSection; ++k) {
            out += keyName(k);
            out += " = ";
            unsigned n = 18 + rng() % 15;
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

// The same queries as wxStrings and as wxFileConfig paths.
struct WxQueries {
    std::vector<std::pair<wxString, wxString>> names;
    std::vector<wxString> paths;
};

WxQueries toWx(const std::vector<Query>& qs) {
    WxQueries w;
    w.names.reserve(qs.size());
    w.paths.reserve(qs.size());
    for (const Query& q : qs) {
        w.names.emplace_back(wxString::FromUTF8(q.sec.c_str()), wxString::FromUTF8(q.key.c_str()));
        w.paths.push_back("/" + w.names.back().first + "/" + w.names.back().second);
    }
    return w;
}

// ns per call of read(i) over count calls, best of 5 passes.
template <class Read>
double nsPerCall(size_t count, Read read) {
    volatile size_t sink = 0;
    const double t = best(5, [&] {
        size_t sum = 0;
        for (size_t i = 0; i < count; ++i)
            sum += read(i);
        sink = sink + sum;
    });
    return t * 1e9 / static_cast<double>(count);
}

// The three reads of a host (a string, a number, a presence test) through
// the C interface, wxIniFile and wxFileConfig, in ns per call.
struct ReadCosts {
    double store[3], wx[3], fileConfig[3];
};
const char* const kReadNames[3] = {"ReadString", "ReadLong", "HasKey"};

// ns of one dependent random memory access: a chase through a random cycle
// over 64 MB, each load's address the previous load's result. Measured in
// the rounds of the reads it is compared with, it sees the same machine.
class PointerChase {
public:
    PointerChase() : m_next((64u << 20) / sizeof(size_t)) {
        for (size_t i = 0; i < m_next.size(); ++i)
            m_next[i] = i;
        std::mt19937_64 rng(3);
        for (size_t i = m_next.size() - 1; i > 0; --i) // Sattolo: one cycle through all
            std::swap(m_next[i], m_next[rng() % i]);
    }
    // One pass of ten million steps; keeps the best.
    void pass() {
        static volatile size_t sink = 0;
        const size_t steps = 10000000;
        const double t0 = now();
        size_t at = 0;
        for (size_t i = 0; i < steps; ++i)
            at = m_next[at];
        sink = sink + at;
        m_best = std::min(m_best, (now() - t0) * 1e9 / static_cast<double>(steps));
    }
    double ns() const { return m_best; }

private:
    std::vector<size_t> m_next;
    double m_best = 1e100;
};

// ns per call of one pass of read(i) over count calls.
template <class Read>
double onePass(size_t count, Read read) {
    static volatile size_t sink = 0;
    const double t0 = now();
    size_t sum = 0;
    for (size_t i = 0; i < count; ++i)
        sum += read(i);
    sink = sink + sum;
    return (now() - t0) * 1e9 / static_cast<double>(count);
}

// The reads are measured in rounds, each read once a round, and each keeps
// its best round: a change in the machine's state between two measurements
// then weighs on both alike.
ReadCosts measureReads(inifile h, const wxIniFile& ini, const wxFileConfig& cfg,
                       const std::vector<Query>& qs, PointerChase* chase = nullptr) {
    const WxQueries w = toWx(qs);
    const size_t n = qs.size();
    // wxFileConfig takes microseconds a call on the large store: a tenth of
    // the queries is plenty there.
    const size_t m = std::min<size_t>(n, 100000);
    const wxString def;
    ReadCosts c;
    for (int r = 0; r < 3; ++r)
        c.store[r] = c.wx[r] = c.fileConfig[r] = 1e100;
    auto keep = [](double& bestSoFar, double t) { bestSoFar = std::min(bestSoFar, t); };
    for (int round = 0; round < 5; ++round) {
        if (chase)
            chase->pass();
        keep(c.store[0], onePass(n, [&](size_t i) {
                 return static_cast<size_t>(
                     inifile_read_string(h, qs[i].sec.c_str(), qs[i].key.c_str(), "")[0]);
             }));
        keep(c.wx[0], onePass(n, [&](size_t i) {
                 return ini.ReadString(w.names[i].first, w.names[i].second, def).length();
             }));
        keep(c.store[1], onePass(n, [&](size_t i) {
                 return static_cast<size_t>(
                     inifile_read_long(h, qs[i].sec.c_str(), qs[i].key.c_str(), 0));
             }));
        keep(c.wx[1], onePass(n, [&](size_t i) {
                 return static_cast<size_t>(ini.ReadLong(w.names[i].first, w.names[i].second, 0));
             }));
        keep(c.store[2], onePass(n, [&](size_t i) {
                 return static_cast<size_t>(
                     inifile_has_key(h, qs[i].sec.c_str(), qs[i].key.c_str()));
             }));
        keep(c.wx[2], onePass(n, [&](size_t i) {
                 return static_cast<size_t>(ini.HasKey(w.names[i].first, w.names[i].second));
             }));
        keep(c.fileConfig[0], onePass(m, [&](size_t i) {
                 wxString v;
                 cfg.Read(w.paths[i], &v);
                 return v.length();
             }));
        keep(c.fileConfig[1], onePass(m, [&](size_t i) {
                 long v = 0;
                 cfg.Read(w.paths[i], &v);
                 return static_cast<size_t>(v);
             }));
        keep(c.fileConfig[2],
             onePass(m, [&](size_t i) { return static_cast<size_t>(cfg.HasEntry(w.paths[i])); }));
    }
    return c;
}

// Peak resident memory of this process so far, in bytes (VmHWM).
long peakResident() {
    long kb = -1;
    if (FILE* f = std::fopen("/proc/self/status", "r")) {
        char line[256];
        while (std::fgets(line, sizeof line, f))
            if (std::sscanf(line, "VmHWM: %ld kB", &kb) == 1)
                break;
        std::fclose(f);
    }
    return kb * 1024;
}

// Child mode (--peak PATH): opens the file and prints how far the peak rose
// above the peak before the open.
int peakChild(const char* path) {
    const long before = peakResident();
    inifile h = inifile_new();
    pdError* e = nullptr;
    if (inifile_open(h, path, &e) != 0)
        return 1;
    const long after = peakResident();
    std::printf("%ld\n", after - before);
    inifile_delete(h);
    return 0;
}

// Runs this program as a child that only opens the file; its peak memory
// above its own baseline, in bytes, or -1.
long peakOfOpen(const char* self, const std::string& path) {
    const std::string command = std::string("'") + self + "' --peak '" + path + "'";
    long bytes = -1;
    if (FILE* p = popen(command.c_str(), "r")) {
        if (std::fscanf(p, "%ld", &bytes) != 1)
            bytes = -1;
        pclose(p);
    }
    return bytes;
}

const char* verdict(bool met) {
    return met ? "met" : "missed";
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "--peak") == 0)
        return peakChild(argv[2]);
    wxInitializer init;
    wxLog::EnableLogging(false);
    std::string dir = "/tmp";
    bool keep = false;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--keep") == 0)
            keep = true;
        else if (std::strcmp(argv[i], "--wall") == 0)
            g_cpu = false;
        else if (std::strcmp(argv[i], "--cpu") == 0)
            g_cpu = true;
        else
            dir = argv[i];
    }
    std::string path = dir + "/vesk-bench-" + std::to_string(getpid()) + ".ini";
    std::string saved = path + ".saved";
    std::string text = generate();
    writeFile(path, text);
    const double mb = static_cast<double>(text.size()) / 1e6;
    std::printf("file: %s, %.1f MB, %d sections of %d keys; %s time, best of 5 runs\n",
                path.c_str(), mb, kSections, kKeysPerSection, g_cpu ? "CPU" : "wall-clock");

    // Open, and open followed by the keys of every section: what a program
    // that reads the whole file pays, and a fair match for a parser that
    // hands out everything it reads. Each run's store is deleted after its
    // time is taken, so its freeing isn't counted and the next run reuses
    // the memory. The first run is printed too: it touches memory new to the
    // process, which on a virtual machine can cost several times as much.
    auto openFile = [&] {
        inifile h = inifile_new();
        pdError* e = nullptr;
        if (inifile_open(h, path.c_str(), &e) != 0) {
            std::printf("open failed: %s: %s\n", pderror_region(e), pderror_message(e));
            std::exit(1);
        }
        return h;
    };
    auto readAllKeys = [&](inifile h) {
        size_t seen = 0;
        const int sections = inifile_get_section_count(h);
        for (int s = 0; s < sections; ++s) {
            const char* name = inifile_get_section_by_index(h, s);
            const int keys = inifile_get_key_count(h, name);
            for (int k = 0; k < keys; ++k)
                seen += inifile_get_key_by_index(h, name, k)[0] != 0;
        }
        if (seen != static_cast<size_t>(kSections) * kKeysPerSection)
            std::exit(1);
    };
    double firstOpen = 0, firstFull = 0;
    auto bestOpen = [&](bool allKeys, double& first) {
        double b = 1e100;
        for (int i = 0; i < 5; ++i) {
            const double t0 = now();
            inifile h = openFile();
            if (allKeys)
                readAllKeys(h);
            const double t = now() - t0;
            if (i == 0)
                first = t;
            b = std::min(b, t);
            inifile_delete(h);
        }
        return b;
    };
    const double tOpen = bestOpen(false, firstOpen);
    const double tFull = bestOpen(true, firstFull);
    inifile big = openFile();
    std::printf("open:  %7.1f ms  %7.1f MB/s  (first run %.1f ms)\n", tOpen * 1e3, mb / tOpen,
                firstOpen * 1e3);
    std::printf("open + the keys of every section: %7.1f ms  %7.1f MB/s  (first run %.1f ms)\n",
                tFull * 1e3, mb / tFull, firstFull * 1e3);

    double tSave = best(5, [&] {
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
    // First touch of every section is not what we time.
    for (const Query& q : bigQ)
        inifile_read_string(big, q.sec.c_str(), q.key.c_str(), "");

    wxIniFile smallIni;
    wxFileConfig smallCfg(wxEmptyString, wxEmptyString, wxEmptyString, wxEmptyString, 0);
    for (int k = 0; k < 10; ++k) {
        smallIni.WriteString("Section", wxString::FromUTF8(keyName(k).c_str()), "value");
        smallCfg.Write("/Section/" + wxString::FromUTF8(keyName(k).c_str()), "value");
    }
    const ReadCosts smallCost = measureReads(small, smallIni, smallCfg, smallQ);
    // What ReadString adds to the store's read beyond the names: the wxString
    // it gives (made from the decoded units, freed).
    const wxString valueText("value");
    const double nsResult = nsPerCall(kReads, [&](size_t) {
        wxString r(valueText.wc_str(), valueText.length());
        return r.length();
    });

    wxIniFile bigIni(wxString::FromUTF8(path.c_str()));
    double tFileConfig = 0;
    ReadCosts bigCost{};
    PointerChase chaseCost;
    {
        std::unique_ptr<wxFileConfig> bigCfg;
        tFileConfig = best(1, [&] {
            bigCfg.reset(new wxFileConfig(wxEmptyString, wxEmptyString,
                                          wxString::FromUTF8(path.c_str()), wxEmptyString,
                                          wxCONFIG_USE_LOCAL_FILE));
        });
        for (const Query& q : bigQ) // first touch, as above
            bigIni.HasKey(wxString::FromUTF8(q.sec.c_str()), wxString::FromUTF8(q.key.c_str()));
        bigCost = measureReads(big, bigIni, *bigCfg, bigQ, &chaseCost);
    }
    std::printf("reads, ns per call on 10 keys | on 1,000,000 keys in 100,000 sections:\n");
    for (int r = 0; r < 3; ++r)
        std::printf("  %-10s  store %6.1f  wxIniFile %6.1f  wxFileConfig %6.1f  |  store %6.1f  "
                    "wxIniFile %6.1f  wxFileConfig %6.1f\n",
                    kReadNames[r], smallCost.store[r], smallCost.wx[r], smallCost.fileConfig[r],
                    bigCost.store[r], bigCost.wx[r], bigCost.fileConfig[r]);
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
    const double nsOne = nsPerCall(kReads, [&](size_t i) {
        return static_cast<size_t>(
            inifile_read_string(one, oneQ[i].sec.c_str(), oneQ[i].key.c_str(), "")[0]);
    });
    std::printf("write: %7.1f ns per new key (1,000,000 into one section)\n",
                tWrite * 1e9 / static_cast<double>(kReads));
    std::printf("read:  %7.1f ns on 1,000,000 keys in one section\n", nsOne);
    inifile_delete(one);
    inifile_delete(small);

    const double chase = chaseCost.ns();
    std::printf("one dependent random memory access (pointer chase over 64 MB): %.1f ns\n", chase);

    const long peak = peakOfOpen(argv[0], path);

    std::printf("peers, open time as a multiple of ours (higher: we are faster):\n");
    double tInih = 0;
#ifdef HAVE_INIH
    {
        tInih = best(5, [&] {
            size_t count = 0;
            ini_parse(
                path.c_str(),
                [](void* user, const char*, const char*, const char*) -> int {
                    ++*static_cast<size_t*>(user);
                    return 1;
                },
                &count);
        });
        std::printf("  inih (parse only):  %8.1f ms  %6.2fx  (%.2fx of open + keys)\n", tInih * 1e3,
                    tInih / tOpen, tInih / tFull);
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
        std::printf("  SimpleIni:          %8.1f ms  %6.2fx  (%.2fx of open + keys)\n", t * 1e3,
                    t / tOpen, t / tFull);
    }
#else
    std::printf("  SimpleIni: not installed (libsimpleini-dev), skipped\n");
#endif
    std::printf("  wxFileConfig:       %8.1f ms  %6.2fx  (%.2fx of open + keys)\n",
                tFileConfig * 1e3, tFileConfig / tOpen, tFileConfig / tFull);

    // The names' share of a wrapper's cost is what HasKey adds to the store's.
    const double wrapperString = smallCost.wx[0] - smallCost.store[0];
    const double wrapperNames = smallCost.wx[2] - smallCost.store[2];
    std::printf("wxIniFile::ReadString above the store's read on 10 keys: %.1f ns: the result "
                "wxString %.1f ns, the names %.1f ns (HasKey above the store's), the rest "
                "%.1f ns\n",
                wrapperString, nsResult, wrapperNames, wrapperString - nsResult - wrapperNames);

    std::printf("targets:\n");
    for (int r = 0; r < 3; ++r) {
        const double ratio = smallCost.wx[r] / smallCost.store[r];
        std::printf("  wxIniFile::%-10s on 10 keys within 2x of the store's: %.1f / %.1f ns = "
                    "%.2fx: %s\n",
                    kReadNames[r], smallCost.wx[r], smallCost.store[r], ratio,
                    verdict(ratio <= 2.0));
    }
    for (int r = 0; r < 3; ++r) {
        const bool met =
            smallCost.wx[r] < smallCost.fileConfig[r] && bigCost.wx[r] < bigCost.fileConfig[r];
        std::printf("  wxIniFile::%-10s ahead of wxFileConfig: 10 keys %.1f vs %.1f ns, "
                    "1,000,000 keys %.1f vs %.1f ns: %s\n",
                    kReadNames[r], smallCost.wx[r], smallCost.fileConfig[r], bigCost.wx[r],
                    bigCost.fileConfig[r], verdict(met));
    }
    std::printf("  random read in the 1,000,000-key store within 3 memory accesses: %.1f ns = "
                "%.2f accesses of %.1f ns: %s\n",
                bigCost.store[0], bigCost.store[0] / chase, chase,
                verdict(bigCost.store[0] <= 3 * chase));
    const double wrapperCost = smallCost.wx[0] - smallCost.store[0];
    std::printf("  wxIniFile::ReadString there within 3 accesses + the 10-key wrapper cost: "
                "%.1f ns, bound %.1f + %.1f = %.1f ns: %s\n",
                bigCost.wx[0], 3 * chase, wrapperCost, 3 * chase + wrapperCost,
                verdict(bigCost.wx[0] <= 3 * chase + wrapperCost));
    std::printf("  open + keys of every section at 500 MB/s or more: %.1f MB/s: %s\n", mb / tFull,
                verdict(mb / tFull >= 500));
    if (tInih > 0)
        std::printf("  open + keys of every section at 1.5x inih's parse-only or more: %.2fx: %s\n",
                    tInih / tFull, verdict(tInih / tFull >= 1.5));
    else
        std::printf("  open + keys of every section at 1.5x inih's parse-only: inih not "
                    "installed, not measured: missed\n");
    std::printf(
        "  peak memory of open at most 2x the file: %.1f MB above the baseline = %.2fx "
        "of %.1f MB: %s\n",
        static_cast<double>(peak) / 1e6, static_cast<double>(peak) / 1e6 / mb, mb,
        verdict(peak >= 0 && static_cast<double>(peak) <= 2 * static_cast<double>(text.size())));
    if (!keep) {
        std::remove(path.c_str());
        std::remove(saved.c_str());
    }
    return 0;
}
