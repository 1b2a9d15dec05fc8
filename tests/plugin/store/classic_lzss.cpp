#include "tests/plugin/store/classic_lzss.h"

#include <algorithm>
#include <memory>

namespace {

constexpr int N = 4096;
constexpr int F = 18;
constexpr int THRESHOLD = 2;
constexpr int NIL = N;

struct Coder {
    unsigned char text[N + F - 1];
    int match_position, match_length;
    int lson[N + 1], rson[N + 257], dad[N + 1];

    void InitTree() {
        for (int i = N + 1; i <= N + 256; i++) rson[i] = NIL;
        for (int i = 0; i < N; i++) dad[i] = NIL;
    }

    void InsertNode(int r) {
        int cmp = 1;
        const unsigned char* key = &text[r];
        int p = N + 1 + key[0];
        rson[r] = lson[r] = NIL;
        match_length = 0;
        for (;;) {
            if (cmp >= 0) {
                if (rson[p] != NIL) {
                    p = rson[p];
                } else {
                    rson[p] = r;
                    dad[r] = p;
                    return;
                }
            } else {
                if (lson[p] != NIL) {
                    p = lson[p];
                } else {
                    lson[p] = r;
                    dad[r] = p;
                    return;
                }
            }
            int i;
            for (i = 1; i < F; i++) {
                if ((cmp = key[i] - text[p + i]) != 0) break;
            }
            if (i > match_length) {
                match_position = p;
                if ((match_length = i) >= F) break;
            }
        }
        dad[r] = dad[p];
        lson[r] = lson[p];
        rson[r] = rson[p];
        dad[lson[p]] = r;
        dad[rson[p]] = r;
        if (rson[dad[p]] == p) {
            rson[dad[p]] = r;
        } else {
            lson[dad[p]] = r;
        }
        dad[p] = NIL;
    }

    void DeleteNode(int p) {
        int q;
        if (dad[p] == NIL) return;
        if (rson[p] == NIL) {
            q = lson[p];
        } else if (lson[p] == NIL) {
            q = rson[p];
        } else {
            q = lson[p];
            if (rson[q] != NIL) {
                do {
                    q = rson[q];
                } while (rson[q] != NIL);
                rson[dad[q]] = lson[q];
                dad[lson[q]] = dad[q];
                lson[q] = lson[p];
                dad[lson[p]] = q;
            }
            rson[q] = rson[p];
            dad[rson[p]] = q;
        }
        dad[q] = dad[p];
        if (rson[dad[p]] == p) {
            rson[dad[p]] = q;
        } else {
            lson[dad[p]] = q;
        }
        dad[p] = NIL;
    }
};

} // namespace

size_t ClassicPack(const uint8_t* plain, size_t bytes, uint8_t* out) {
    uint8_t* const start = out;
    auto coder = std::make_unique<Coder>();
    Coder& c = *coder;
    unsigned char code_buf[17] = {};
    int code_buf_ptr = 1;
    unsigned char mask = 1;
    size_t next = 0;
    int s = 0;
    int r = N - F;
    int len = 0;
    c.InitTree();
    for (int i = 0; i < N + F - 1; i++) c.text[i] = 0;
    while (len < F && next < bytes) c.text[r + len++] = plain[next++];
    if (len == 0) return 0;
    for (int i = 1; i <= F; i++) c.InsertNode(r - i);
    c.InsertNode(r);
    do {
        if (c.match_length > len) c.match_length = len;
        if (c.match_length <= THRESHOLD) {
            c.match_length = 1;
            code_buf[0] |= mask;
            code_buf[code_buf_ptr++] = c.text[r];
        } else {
            code_buf[code_buf_ptr++] = static_cast<unsigned char>(c.match_position);
            code_buf[code_buf_ptr++] = static_cast<unsigned char>(((c.match_position >> 4) & 0xf0) |
                                                                  (c.match_length - (THRESHOLD + 1)));
        }
        mask = static_cast<unsigned char>(mask << 1);
        if (mask == 0) {
            out = std::copy(code_buf, code_buf + code_buf_ptr, out);
            code_buf[0] = 0;
            code_buf_ptr = mask = 1;
        }
        const int last_match_length = c.match_length;
        int i;
        for (i = 0; i < last_match_length && next < bytes; i++) {
            c.DeleteNode(s);
            c.text[s] = plain[next++];
            if (s < F - 1) c.text[s + N] = c.text[s];
            s = (s + 1) & (N - 1);
            r = (r + 1) & (N - 1);
            c.InsertNode(r);
        }
        while (i++ < last_match_length) {
            c.DeleteNode(s);
            s = (s + 1) & (N - 1);
            r = (r + 1) & (N - 1);
            if (--len) c.InsertNode(r);
        }
    } while (len > 0);
    if (code_buf_ptr > 1) out = std::copy(code_buf, code_buf + code_buf_ptr, out);
    return static_cast<size_t>(out - start);
}

size_t ClassicUnpack(const uint8_t* packed, size_t bytes, uint8_t* out) {
    uint8_t* const start = out;
    unsigned char ring[N] = {};
    int r = N - F;
    unsigned flags = 0;
    size_t next = 0;
    for (;;) {
        if (((flags >>= 1) & 256) == 0) {
            if (next >= bytes) break;
            flags = packed[next++] | 0xff00u;
        }
        if (flags & 1) {
            if (next >= bytes) break;
            *out++ = ring[r++] = packed[next++];
            r &= N - 1;
        } else {
            if (next + 1 >= bytes) break;
            const int i = packed[next] | ((packed[next + 1] & 0xf0) << 4);
            const int j = (packed[next + 1] & 0x0f) + THRESHOLD;
            next += 2;
            for (int k = 0; k <= j; k++) {
                const uint8_t byte = ring[(i + k) & (N - 1)];
                *out++ = ring[r++] = byte;
                r &= N - 1;
            }
        }
    }
    return static_cast<size_t>(out - start);
}

std::vector<uint8_t> ClassicPack(const std::vector<uint8_t>& plain) {
    std::vector<uint8_t> out(plain.size() + (plain.size() + 7) / 8);
    out.resize(ClassicPack(plain.data(), plain.size(), out.data()));
    return out;
}

std::vector<uint8_t> ClassicUnpack(const std::vector<uint8_t>& packed) {
    std::vector<uint8_t> out(packed.size() * 9); // a pair of two bytes gives 18 at most
    out.resize(ClassicUnpack(packed.data(), packed.size(), out.data()));
    return out;
}
