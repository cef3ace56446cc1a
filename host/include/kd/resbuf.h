#pragma once

#include <cstdint>

/// Codes of the list-processing interface: what a call came to, and what a result buffer holds.
enum : int {
    RTNORM = 5100,    ///< success
    RTNONE = 5000,    ///< no value, or empty input
    RTREAL = 5001,    ///< double
    RTPOINT = 5002,   ///< point in a plane; carried as three doubles
    RTSHORT = 5003,   ///< 16-bit integer
    RTSTR = 5005,     ///< wide string
    RTENAME = 5006,   ///< entity name
    RTPICKS = 5007,   ///< selection set
    RT3DPOINT = 5009, ///< point in space
    RTLONG = 5010,    ///< 32-bit integer
    RTLB = 5016,      ///< list begin
    RTLE = 5017,      ///< list end
    RTERROR = -5001,  ///< failure
    RTCAN = -5002,    ///< cancelled by the user
    RTREJ = -5003,    ///< request refused
    RTKWORD = -5005   ///< a keyword was entered
};

using kds_real = double;
using kds_point = kds_real[3];
using kds_matrix = kds_real[4][4];

/// Entity name or selection set of the list-processing interface.
using kds_name = std::int64_t[2];

/// One node of a list of typed values.
///
/// Strings are allocated by the host and freed with the node.
struct resbuf {
    struct Binary {
        short clen;
        char* buf;
    };

    resbuf* rbnext;
    short restype;

    union {
        kds_real rreal;
        kds_real rpoint[3];
        short rint;
        wchar_t* rstring;
        std::int64_t rlname[2];
        std::int32_t rlong;
        Binary rbinary;
    } resval;
};

/// Frees a whole list with the strings it holds; nothing for null. @return RTNORM
int kdutRelRb(resbuf* list);

/// Builds a list from pairs of type code and value, ended by the code 0 or RTNONE.
///
/// RTSHORT, 1060-1071 take an int (1071 and RTLONG a 32-bit one); RTREAL and 1040-1042 a double;
/// RTPOINT, RT3DPOINT and 1010-1013 a `const double*`; RTSTR, 1000-1003 and 1005 a
/// `const wchar_t*`; 1004 a `const resbuf::Binary*`; RTENAME and RTPICKS a `const std::int64_t*`;
/// RTLB and RTLE no value. The group codes of drawing files below 1000 take what the group holds.
/// @return the list, owned by the caller; null when a code is unknown or memory is short
resbuf* kdutBuildList(int type, ...);

/// One node with a zero value and no successor, owned by the caller. Null when memory is short.
resbuf* kdutNewRb(int type);

/// A host-owned copy of a text, for a result buffer; freed with kdapi_free or with its node. Null
/// for null and when memory is short.
wchar_t* kdapi_copyString(const wchar_t* text);

/// Frees what the host allocated in a result buffer; nothing for null.
void kdapi_free(void* pointer);
