// The ADS types (adsdef.h): points and names as arrays, and the result buffer that carries typed
// values in chains (Xrecords, selection filters, acutBuildList).
#pragma once

#if defined(_WIN32)
#  include <adsdef.h>
#else

#include "platform/acad/adesk.h"

using ads_real = double;
using ads_point = ads_real[3];
using ads_matrix = ads_real[4][4];
// An entity or selection-set name: two pointer-sized integers.
using ads_name = Adesk::LongPtr[2];
using ads_pointp = ads_real*;
using ads_namep = Adesk::LongPtr*;

enum { X = 0, Y = 1, Z = 2 };

struct ads_binary {
  short clen;
  char* buf;
};

union ads_u_val {
  ads_real rreal;
  ads_real rpoint[3];
  short rint;
  ACHAR* rstring;
  Adesk::LongPtr rlname[2];
  Adesk::Int32 rlong;
  Adesk::Int64 mnInt64;
  struct ads_binary rbinary;
  unsigned char ihandle[8];
};

// One link of a chain. restype is a DXF group code (entity data, Xrecords) or an RT code (5000 and
// up, see adscodes.h); resval holds the value in the member that restype selects.
struct resbuf {
  struct resbuf* rbnext;
  short restype;
  union ads_u_val resval;
};

#endif  // !_WIN32
