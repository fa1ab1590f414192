// Shared ownership of one handle of a C library (an INI store, a libxml2
// reader, writer or document) among the copies of the object that wraps it.
//
// The wrapping class keeps the handle in a field of its own, as its users
// see it, and beside it a pointer to its share: a block that holds the
// handle once more and the number of objects holding it. Copying an object
// takes one more share; closing or destroying it drops one; the last share
// dropped frees the handle. A block may also keep an older block alive (a
// document that a new one replaced while node handles may still point into
// it): that one is dropped when the newer block goes.
//
// The wrapper declares the block as a private nested type and defines it in
// its own unit, so that no name of this helper shows in a public header:
//
//   // header:  struct Share; Share* m_share;
//   // unit:    struct wxIniFile::Share
//   //              : wxs::SharedHandle<wxIniFile::Share, inifile, inifile_delete> {};
//
// One thread at a time, as for every object of the library: the count is a
// plain number. Nothing here throws or is exported.
#ifndef WXSUPPORT_SRC_COMMON_SHARED_HANDLE_H
#define WXSUPPORT_SRC_COMMON_SHARED_HANDLE_H

#include <new>

namespace wxs {

template <class Block, class Handle, void (*Free)(Handle)>
class SharedHandle {
public:
    // A first share of handle, keeping `kept` (a share this one takes over)
    // alive as long as itself. Null when memory is short: the caller still
    // owns the handle and the kept share then.
    static Block* Start(Handle handle, Block* kept = nullptr) noexcept {
        Block* block = new (std::nothrow) Block();
        if (block) {
            block->m_handle = handle;
            block->m_owners = 1;
            block->m_kept = kept;
        }
        return block;
    }

    // One share more of block (null stays null).
    static Block* Copy(Block* block) noexcept {
        if (block)
            ++block->m_owners;
        return block;
    }

    // Drops one share and sets block to null. The last share frees the
    // handle, then drops what it kept: a loop, since such chains can be long.
    static void Drop(Block*& block) noexcept {
        Block* b = block;
        block = nullptr;
        while (b && --b->m_owners == 0) {
            Block* next = b->m_kept;
            Free(b->m_handle);
            delete b;
            b = next;
        }
    }

    // Puts other's share in place of block's, dropping block's afterwards, so
    // that assigning an object to itself or to a copy of itself is harmless.
    static void Assign(Block*& block, Block* other) noexcept {
        Copy(other);
        Drop(block);
        block = other;
    }

private:
    Handle m_handle = Handle();
    unsigned long m_owners = 0;
    Block* m_kept = nullptr;
};

} // namespace wxs

#endif // WXSUPPORT_SRC_COMMON_SHARED_HANDLE_H
