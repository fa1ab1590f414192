// Hostile input: false or empty results, no crash, no bomb, no file opened.
#include <wxsupport/xml/xml-reader.h>

#include "child_process.h"
#include "xml_test_util.h"

#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <functional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using HostileTest = XmlTest;

// Reads to the first element (end: to the end); gives whether it got there.
static bool Read(wxXmlReader& r, const wxString& path, bool end = false) {
    if (r.Open(path))
        while (r.iRead() && (end || !r.IsElement()))
            r.GetAttr("a");
    return end ? r.IsEOF() : r.IsElement();
}

static std::string Repeat(const std::string& s, int n) {
    std::string out;
    while (n-- > 0)
        out += s;
    return out;
}

TEST_F(HostileTest, BrokenDocumentsAreRefused) {
    // Truncated, mismatched, invalid UTF-8, wrong or unknown encoding, NUL,
    // 10,000 levels deep; and last a good one, 200 levels deep.
    const std::string cases[] = {"",
                                 "<root><a x=\"1\"><b>text</b",
                                 "<root><a></b></root>",
                                 "<root>\xc3\x28\xff</root>",
                                 "<?xml version=\"1.0\" encoding=\"UTF-16\"?><r/>",
                                 "<?xml version=\"1.0\" encoding=\"no-such\"?><r/>",
                                 std::string("<r>a\0b</r>", 10),
                                 Repeat("<n>", 10000) + Repeat("</n>", 10000),
                                 Repeat("<n>", 200) + Repeat("</n>", 200)};
    for (const std::string& bytes : cases) {
        const bool ok = &bytes == &cases[8];
        const wxString path = Doc(bytes);
        const wxString text = wxString::FromUTF8(bytes.data(), bytes.size());
        wxXmlReader r;
        EXPECT_EQ(Read(r, path, true), ok) << bytes.substr(0, 40);
        EXPECT_EQ(wxXmlTree().Open(path), ok) << bytes.substr(0, 40);
        EXPECT_EQ(wxXmlTree().Parse(text), ok) << bytes.substr(0, 40);
    }
    wxXmlReader r; // libxml2 gives a reader for a directory; reading it fails
    EXPECT_TRUE(r.Open(wxString::FromUTF8(dir.path())));
    EXPECT_FALSE(r.iRead());
    EXPECT_FALSE(r.IsEOF());
    EXPECT_FALSE(wxXmlTree().Open(wxString::FromUTF8(dir.path())));
}

// Runs fn in a child process: growth of its peak resident size in MiB, -1
// when fn fails or the child ends otherwise (a runaway expansion meets the
// child's time limit).
static long PeakGrowthMiB(const std::function<bool()>& fn) {
    const ChildResult r = RunInChild([&fn](int report) {
        rusage before{}, after{}; // the peak starts at what the child holds
        getrusage(RUSAGE_SELF, &before);
        if (!fn() || getrusage(RUSAGE_SELF, &after) != 0)
            return 1;
        return WriteAll(report, std::to_string((after.ru_maxrss - before.ru_maxrss) >> 10)) ? 0 : 1;
    });
    return r.ok() ? std::stol(r.report) : -1;
}

TEST_F(HostileTest, BillionLaughsIsRefused) {
    std::string laughs = "<!DOCTYPE lolz [<!ENTITY lol0 \"lol\">\n";
    for (int i = 1; i <= 9; ++i)
        laughs += "<!ENTITY lol" + std::to_string(i) + " \"" +
                  Repeat("&lol" + std::to_string(i - 1) + ";", 10) + "\">\n";
    for (const std::string& doc :
         {laughs + "]><lolz>&lol9;</lolz>", laughs + "]><lolz a=\"&lol9;\"/>"}) {
        const wxString path = Doc(doc);
        const auto start = std::chrono::steady_clock::now();
        const long growth = PeakGrowthMiB([&] {
            QuietLibxml();
            wxXmlReader r;
            bool small = r.Open(path);
            while (r.iRead())
                small = small && r.GetAttr("a").length() < 1000 && r.GetText().length() < 1000;
            return small && !r.IsEOF() && !wxXmlTree().Open(path) &&
                   !wxXmlTree().Parse(wxString::FromUTF8(doc));
        });
        EXPECT_GE(growth, 0) << "the child failed or didn't end";
        EXPECT_LT(growth, 32);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    }
}

TEST_F(HostileTest, AttributeExpansionIsBounded) {
    // 140 KB whose attribute "bomb" would expand to 1 GB, "p:bomb" to 4.8 MB.
    const std::string doc = "<!DOCTYPE r [<!ENTITY big \"" + std::string(100 * 1024, 'x') +
                            "\"><!ENTITY small \"abc\">]><r ok=\"fine\" few=\"&small;-&small;\""
                            " bomb=\"" +
                            Repeat("&big;", 10000) + "\" xmlns:p=\"urn:p\" p:bomb=\"" +
                            Repeat("&big;", 48) + "\"/>";
    const wxString path = Doc(doc);
    wxXmlReader r;
    ASSERT_TRUE(Read(r, path));
    EXPECT_EQ(r.GetAttr("ok"), "fine");
    EXPECT_EQ(r.GetAttr("few"), "abc-abc");
    EXPECT_EQ(r.GetAttr("p:bomb"), "");
    // Every attribute operation of the reader, the opened and the parsed tree.
    for (int mode = 0; mode < 3; ++mode) {
        const long growth = PeakGrowthMiB([&] {
            int n = 3;
            wxColour c(1, 2, 3);
            wxXmlReader x;
            wxXmlTree y;
            if (mode == 0)
                return Read(x, path) && x.GetAttr("bomb").empty() && x.HasAttr("bomb") &&
                       !x.GetAttrAsBool("bomb", false) && !x.AttrAsInt("bomb", &n) && n == 3 &&
                       !x.AttrAsColor("bomb", c) && c == wxColour(1, 2, 3);
            if (!(mode == 1 ? y.Open(path) : y.Parse(wxString::FromUTF8(doc))))
                return false;
            const wxXmlNode e = y.GetRoot();
            return e.GetAttr("bomb").empty() && e.HasAttr("bomb") && e.GetAttrAsInt("bomb") == 0 &&
                   e.GetAttrAsDouble("bomb") == 0.0 && !e.getAttrAsColour("bomb").IsOk() &&
                   !e.getAttrAsDateTime("bomb").IsValid();
        });
        EXPECT_GE(growth, 0) << "mode " << mode << ": the child failed or didn't end";
        EXPECT_LT(growth, 100) << "mode " << mode;
    }
}

TEST_F(HostileTest, ExternalEntitiesAreNeverOpened) {
    // The FIFO's writing end opens without blocking only once something reads it.
    const std::string fifo = dir.file("target");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    std::atomic<bool> stop{false}, opened{false};
    std::thread watcher([&] {
        for (; !stop; std::this_thread::sleep_for(std::chrono::milliseconds(1))) {
            const int fd = open(fifo.c_str(), O_WRONLY | O_NONBLOCK);
            if (fd >= 0)
                opened = true, close(fd); // lets a blocked reader see the end
        }
    });
    for (const std::string doc : {"<!DOCTYPE r [<!ENTITY e SYSTEM \"target\">]><r>&e;<a/></r>",
                                  "<!DOCTYPE r [<!ENTITY e SYSTEM \"target\">]><r a=\"&e;\"/>",
                                  "<!DOCTYPE r SYSTEM \"target\"><r/>",
                                  "<!DOCTYPE r [<!ENTITY % p SYSTEM \"target\"> %p;]><r/>"}) {
        const wxString path = Doc(doc);
        wxXmlReader r;
        Read(r, path, true);
        wxXmlTree().Open(path);
        wxXmlTree().Parse(wxString::FromUTF8(doc));
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    stop = true;
    watcher.join();
    EXPECT_FALSE(opened) << "libxml2 opened the file that an entity names";
}
