// Fuzz target: the INI store's parser and writer.
//
// Any bytes are a file. Open must either succeed or fail with an error record
// and the store's old contents intact. After a successful open, everything
// the store shows is read, the store is saved, and:
//  - an unchanged save gives back the file byte for byte;
//  - the saved file opens again and reads exactly as the first reading;
//  - after one value is changed and one key added, the same holds for a
//    second save and reading.
#include "ini_common.h"

#include <cstdint>
#include <cstring>

using namespace fuzzini;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    // The case rule comes from the length, so that the file text stays whole.
    const int caseSensitive = static_cast<int>(size & 1);
    const std::string path = ScratchFile("input.ini");
    const std::string saved = ScratchFile("saved.ini");
    WriteBytes(path, data, size);

    inifile h = inifile_new();
    inifile_set_case_sensitive(h, caseSensitive);
    inifile_write_string(h, "before open", "marker", "kept on failure");
    pdError* err = reinterpret_cast<pdError*>(&h); // must be reset to null
    const int rc = inifile_open(h, path.c_str(), &err);
    if (rc != 0) {
        Check(err != nullptr, "failed open left no error record");
        Check(pderror_region(err) != nullptr && pderror_message(err) != nullptr,
              "error record without texts");
        Check(strstr(pderror_region(err), path.c_str()) == pderror_region(err),
              std::string("error region doesn't start with the path: ") + pderror_region(err));
        Check(*pderror_message(err) != '\0', "empty error message");
        pderror_free(err);
        Check(inifile_get_section_count(h) == 1 &&
                  strcmp(inifile_read_string(h, "before open", "marker", ""), "kept on failure") ==
                      0,
              "failed open changed the store");
        inifile_delete(h);
        return 0;
    }
    Check(err == nullptr, "successful open left an error record");

    const Reading first = ReadAll(h);
    SaveOrFail(h, saved);
    const std::string savedBytes = ReadBytes(saved);
    if (savedBytes != input)
        Fail("unchanged save is not byte-identical: in " + Show(input) + " out " +
             Show(savedBytes));

    inifile again = OpenOrFail(saved, caseSensitive);
    const Reading second = ReadAll(again);
    if (!(first == second))
        Fail("second reading differs:\n" + Describe(first) + "--- vs ---\n" + Describe(second));
    inifile_delete(again);

    // One edit: change the first key's value (or add a key to the first
    // section), add a key at the end, and compare once more.
    if (!first.empty()) {
        const SectionReading& s = first.front();
        const std::string key = s.keys.empty() ? std::string("fuzz added") : s.keys.front().first;
        inifile_write_string(h, s.name.c_str(), key.c_str(), " edited\n[value]=\"x\" ");
    }
    inifile_write_string(h, "fuzz;section]", "k=ey", "v");
    const Reading edited = ReadAll(h);
    SaveOrFail(h, saved);
    again = OpenOrFail(saved, caseSensitive);
    const Reading third = ReadAll(again);
    if (!(edited == third))
        Fail("reading after an edit differs:\n" + Describe(edited) + "--- vs ---\n" +
             Describe(third));
    inifile_delete(again);
    inifile_delete(h);
    return 0;
}
