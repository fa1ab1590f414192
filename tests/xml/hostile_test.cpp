// Hostile and broken input: every case gives a false or empty result, never
// a crash, an expansion bomb or a file that the document names.
#include <wxsupport/xml/xml-reader.h>

#include "assert_capture.h"
#include "tempdir.h"
#include "xml_test_util.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <functional>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

class HostileTest : public testing::Test {
protected:
    void SetUp() override { QuietLibxml(); }

    wxString Doc(const std::string& bytes) {
        return wxString::FromUTF8(WriteDoc(dir, "doc" + std::to_string(++count) + ".xml", bytes));
    }

    // Walks the file with the reader to its end: true when it ended in order.
    static bool ReadsToEnd(const wxString& path) {
        wxXmlReader r;
        if (!r.Open(path))
            return false;
        int steps = 0;
        while (r.iRead()) {
            r.GetName();
            r.GetAttr("a");
            ++steps;
        }
        return r.IsEOF();
    }

    TempDir dir;
    int count = 0;
};

// Moves the reader to the first element (past a document type node).
bool ToElement(wxXmlReader& r) {
    while (r.iRead()) {
        if (r.IsElement())
            return true;
    }
    return false;
}

std::string Nested(int depth) {
    std::string s;
    for (int i = 0; i < depth; ++i)
        s += "<n>";
    for (int i = 0; i < depth; ++i)
        s += "</n>";
    return s;
}

TEST_F(HostileTest, BrokenDocumentsAreRefused) {
    struct Case {
        const char* what;
        std::string bytes;
    };
    const Case cases[] = {
        {"empty file", ""},
        {"only a declaration", "<?xml version=\"1.0\"?>\n"},
        {"truncated", "<root><a x=\"1\"><b>text</b"},
        {"truncated in a tag", "<root><a x=\"1"},
        {"mismatched tags", "<root><a></b></root>"},
        {"two roots", "<a/><b/>"},
        {"invalid UTF-8", "<root>\xc3\x28\xff</root>"},
        {"invalid UTF-8 in a name", "<r\xfe/>"},
        {"UTF-16 declared, UTF-8 used", "<?xml version=\"1.0\" encoding=\"UTF-16\"?><r/>"},
        {"unknown encoding declared", "<?xml version=\"1.0\" encoding=\"no-such-enc\"?><r/>"},
        {"10,000 levels of nesting", Nested(10000)},
        {"undeclared entity", "<r>&nope;</r>"},
        {"NUL byte", std::string("<r>a\0b</r>", 10)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const wxString path = Doc(c.bytes);
        EXPECT_FALSE(ReadsToEnd(path));
        wxXmlTree t;
        EXPECT_FALSE(t.Open(path));
        wxXmlTree p;
        EXPECT_FALSE(p.Parse(wxString::FromUTF8(c.bytes.data(), c.bytes.size())));
    }
}

TEST_F(HostileTest, WrongButDecodableEncodingStillReads) {
    // UTF-8 bytes under a Latin-1 declaration: libxml2 decodes them as Latin-1.
    const wxString path = Doc("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><r v=\"\xc3\xa9\"/>");
    wxXmlReader r;
    ASSERT_TRUE(r.Open(path));
    ASSERT_TRUE(r.iRead());
    EXPECT_EQ(r.GetAttr("v"), wxString::FromUTF8("\xc3\x83\xc2\xa9"));
    wxXmlTree t;
    ASSERT_TRUE(t.Open(path));
    EXPECT_EQ(t.GetRoot().GetAttr("v"), wxString::FromUTF8("\xc3\x83\xc2\xa9"));
}

TEST_F(HostileTest, DeepButAcceptedNesting) {
    const wxString path = Doc(Nested(200));
    EXPECT_TRUE(ReadsToEnd(path));
    wxXmlTree t;
    ASSERT_TRUE(t.Open(path));
    int depth = 0;
    for (wxXmlNode n = t.GetRoot(); !n.IsNull(); n = n.GetFirstElementChild())
        ++depth;
    EXPECT_EQ(depth, 200);
}

const char* const kLaughs =
    "<?xml version=\"1.0\"?>\n"
    "<!DOCTYPE lolz [\n"
    " <!ENTITY lol \"lol\">\n"
    " <!ENTITY lol1 \"&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;\">\n"
    " <!ENTITY lol2 \"&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;\">\n"
    " <!ENTITY lol3 \"&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;\">\n"
    " <!ENTITY lol4 \"&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;\">\n"
    " <!ENTITY lol5 \"&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;\">\n"
    " <!ENTITY lol6 \"&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;\">\n"
    " <!ENTITY lol7 \"&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;\">\n"
    " <!ENTITY lol8 \"&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;\">\n"
    " <!ENTITY lol9 \"&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;\">\n"
    "]>\n";

// Runs fn in a child process and gives how much the child's peak resident
// size grew while it ran, in bytes (whole MiB); -1 when fn gave false.
long PeakGrowth(const std::function<bool()>& fn) {
    const pid_t pid = fork();
    if (pid == 0) {
        alarm(60); // an expansion that runs away ends here, as a failure
        long pages = 0, resident = 0;
        if (FILE* f = fopen("/proc/self/statm", "r")) {
            if (fscanf(f, "%ld %ld", &pages, &resident) != 2)
                resident = 0;
            fclose(f);
        }
        const long before = resident * sysconf(_SC_PAGESIZE);
        if (!fn())
            _exit(255);
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        const long growth = usage.ru_maxrss * 1024L - before;
        // The growth in MiB, as the exit status.
        _exit(static_cast<int>(growth < 0 ? 0 : std::min(growth >> 20, 250L)));
    }
    int status = 0;
    if (pid < 0 || waitpid(pid, &status, 0) != pid || !WIFEXITED(status) ||
        WEXITSTATUS(status) == 255)
        return -1;
    return static_cast<long>(WEXITSTATUS(status)) << 20;
}

TEST_F(HostileTest, BillionLaughsIsRefused) {
    const std::string inContent = std::string(kLaughs) + "<lolz>&lol9;</lolz>\n";
    const std::string inAttr = std::string(kLaughs) + "<lolz a=\"&lol9;\"/>\n";
    for (const std::string& doc : {inContent, inAttr}) {
        const wxString path = Doc(doc);
        const auto start = std::chrono::steady_clock::now();
        const long growth = PeakGrowth([&]() -> bool {
            QuietLibxml();
            wxXmlTree t;
            bool opened = t.Open(path);
            wxXmlTree p;
            opened = p.Parse(wxString::FromUTF8(doc)) || opened;
            wxXmlReader r;
            r.Open(path);
            bool small = true;
            while (r.iRead())
                small = small && r.GetAttr("a").length() < 1000 && r.GetText().length() < 1000;
            return small && !opened && !r.IsEOF();
        });
        EXPECT_GE(growth, 0) << "the child failed or accepted the document";
        EXPECT_LT(growth, 32L << 20);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    }
}

// A document of about 140 KB whose one attribute would expand to 1 GB.
std::string EntityBomb() {
    std::string doc = "<?xml version=\"1.0\"?>\n<!DOCTYPE r [\n<!ENTITY big \"";
    doc += std::string(100 * 1024, 'x');
    doc += "\">\n<!ENTITY small \"abc\">\n]>\n<r ok=\"fine\" few=\"&small;-&small;\" bomb=\"";
    for (int i = 0; i < 10000; ++i)
        doc += "&big;";
    doc += "\" p:bomb=\"&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;"
           "&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;"
           "&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;&big;\""
           " xmlns:p=\"urn:p\"/>\n";
    return doc;
}

TEST_F(HostileTest, AttributeExpansionIsBounded) {
    const std::string doc = EntityBomb();
    const wxString path = Doc(doc);

    // In this process: the values that fit expand, the bomb reads as unreadable.
    wxXmlReader r;
    ASSERT_TRUE(r.Open(path));
    ASSERT_TRUE(ToElement(r));
    EXPECT_EQ(r.GetAttr("ok"), "fine");
    EXPECT_EQ(r.GetAttr("few"), "abc-abc");
    EXPECT_EQ(r.GetAttr("p:bomb").length(), 0u); // 4.8 MB: past the bound too
    EXPECT_TRUE(r.HasAttr("bomb"));
    wxXmlTree t;
    ASSERT_TRUE(t.Open(path));
    EXPECT_EQ(t.GetRoot().GetAttr("few"), "abc-abc");
    EXPECT_TRUE(t.GetRoot().HasAttr("bomb"));

    const std::function<bool(wxXmlReader&)> readerOps[] = {
        [](wxXmlReader& x) { return x.GetAttr("bomb").empty(); },
        [](wxXmlReader& x) { return x.HasAttr("bomb"); },
        [](wxXmlReader& x) { return !x.GetAttrAsBool("bomb", false); },
        [](wxXmlReader& x) {
            int n = 3;
            return !x.AttrAsInt("bomb", &n) && n == 3;
        },
        [](wxXmlReader& x) {
            wxColour c(1, 2, 3);
            return !x.AttrAsColor("bomb", c) && c == wxColour(1, 2, 3);
        },
    };
    for (const auto& op : readerOps) {
        const long growth = PeakGrowth([&] {
            wxXmlReader x;
            return x.Open(path) && ToElement(x) && op(x);
        });
        EXPECT_GE(growth, 0);
        EXPECT_LT(growth, 100L << 20);
    }

    const std::function<bool(const wxXmlNode&)> treeOps[] = {
        [](const wxXmlNode& n) { return n.GetAttr("bomb").empty(); },
        [](const wxXmlNode& n) { return n.HasAttr("bomb"); },
        [](const wxXmlNode& n) { return n.GetAttrAsInt("bomb") == 0; },
        [](const wxXmlNode& n) { return n.GetAttrAsDouble("bomb") == 0.0; },
        [](const wxXmlNode& n) { return !n.getAttrAsColour("bomb").IsOk(); },
        [](const wxXmlNode& n) { return !n.getAttrAsDateTime("bomb").IsValid(); },
    };
    for (const auto& op : treeOps) {
        const long growth = PeakGrowth([&] {
            wxXmlTree x;
            return x.Open(path) && op(x.GetRoot());
        });
        EXPECT_GE(growth, 0);
        EXPECT_LT(growth, 100L << 20);
    }
    const long growth = PeakGrowth([&] {
        wxXmlTree x;
        return x.Parse(wxString::FromUTF8(doc)) && x.GetRoot().GetAttr("bomb").empty();
    });
    EXPECT_GE(growth, 0);
    EXPECT_LT(growth, 100L << 20);
}

// While a parse runs, watches a FIFO: opening its writing end without
// blocking succeeds only once some reader has opened it.
class FifoWatch {
public:
    explicit FifoWatch(const std::string& path) : fifo(path) {
        EXPECT_EQ(mkfifo(fifo.c_str(), 0600), 0);
        watcher = std::thread([this] {
            while (!stop) {
                const int fd = open(fifo.c_str(), O_WRONLY | O_NONBLOCK);
                if (fd >= 0) {
                    opened = true;
                    close(fd); // lets a blocked reader see the end of the file
                } else if (errno != ENXIO) {
                    failed = true;
                }
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        });
    }
    ~FifoWatch() {
        stop = true;
        watcher.join();
    }

    std::string fifo;
    std::atomic<bool> stop{false}, opened{false}, failed{false};
    std::thread watcher;
};

TEST_F(HostileTest, ExternalEntitiesAreNeverOpened) {
    FifoWatch watch(dir.file("target"));
    const std::string docs[] = {
        "<!DOCTYPE r [<!ENTITY ext SYSTEM \"target\">]>\n<r>&ext;</r>",
        "<!DOCTYPE r [<!ENTITY ext SYSTEM \"target\">]>\n<r a=\"x\">&ext;<e/></r>",
        "<!DOCTYPE r SYSTEM \"target\">\n<r/>",
        "<!DOCTYPE r [<!ENTITY % p SYSTEM \"target\"> %p;]>\n<r/>",
    };
    for (const std::string& doc : docs) {
        SCOPED_TRACE(doc);
        const wxString path = Doc(doc);
        wxXmlReader r;
        ASSERT_TRUE(r.Open(path));
        while (r.iRead()) {
            r.GetText();
            r.GetAttr("a");
        }
        wxXmlTree t;
        t.Open(path);
        wxXmlTree p;
        p.Parse(wxString::FromUTF8(doc));
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(watch.opened) << "libxml2 opened the file that an entity names";
    EXPECT_FALSE(watch.failed);
}

TEST_F(HostileTest, FifoWatchSeesAnOpen) {
    // The check above is sound: libxml2 asked to load the DTD opens the FIFO.
    FifoWatch watch(dir.file("target"));
    const std::string path = WriteDoc(dir, "dtd.xml", "<!DOCTYPE r SYSTEM \"target\">\n<r/>");
    xmlDocPtr loaded = xmlReadFile(path.c_str(), nullptr, XML_PARSE_DTDLOAD);
    xmlFreeDoc(loaded);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_TRUE(watch.opened);
}

} // namespace
