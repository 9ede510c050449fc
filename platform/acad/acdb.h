// The AcDb enumerations and the names of the standard drawing objects (acdb.h).
#pragma once

#if defined(_WIN32)
#  include <acdb.h>
#else

#define ACDB_MODEL_SPACE L"*Model_Space"
#define ACDB_PAPER_SPACE L"*Paper_Space"
#define ACDB_GROUP_DICTIONARY L"ACAD_GROUP"
#define ACDB_LAYOUT_DICTIONARY L"ACAD_LAYOUT"
#define ACDB_TABLESTYLE_DICTIONARY L"ACAD_TABLESTYLE"

struct AcDb {
  enum OpenMode { kForRead = 0, kForWrite = 1, kForNotify = 2 };

  enum Visibility { kVisible = 0, kInvisible = 1 };

  enum Poly2dType { k2dSimplePoly = 0, k2dFitCurvePoly = 1, k2dQuadSplinePoly = 2, k2dCubicSplinePoly = 3 };
  enum Poly3dType { k3dSimplePoly = 0, k3dQuadSplinePoly = 1, k3dCubicSplinePoly = 2 };
  enum Vertex2dType { k2dVertex = 0, k2dSplineCtlVertex = 1, k2dSplineFitVertex = 2, k2dCurveFitVertex = 3 };
  enum Vertex3dType { k3dSimpleVertex = 0, k3dControlVertex = 1, k3dFitVertex = 2 };

  enum TextHorzMode { kTextLeft = 0, kTextCenter = 1, kTextRight = 2, kTextAlign = 3, kTextMid = 4, kTextFit = 5 };
  enum TextVertMode { kTextBase = 0, kTextBottom = 1, kTextVertMid = 2, kTextTop = 3 };

  // Lock and edit states of a table cell (bit flags; the values are this platform's choice).
  enum CellState {
    kCellStateNone = 0x00,
    kCellStateContentLocked = 0x01,
    kCellStateContentReadOnly = 0x02,
    kCellStateFormatLocked = 0x04,
    kCellStateFormatReadOnly = 0x08,
  };

  // DXF group codes: the restype of result buffers in Xrecords and entity data.
  enum DxfCode {
    kDxfInvalid = -9999,
    kDxfStart = 0,
    kDxfText = 1,
    kDxfShapeName = 2,
    kDxfHandle = 5,
    kDxfLinetypeName = 6,
    kDxfTextStyleName = 7,
    kDxfLayerName = 8,
    kDxfXCoord = 10,
    kDxfReal = 40,
    kDxfInt16 = 70,
    kDxfInt32 = 90,
    kDxfSubclass = 100,
    kDxfControlString = 102,
    kDxfXReal = 140,
    kDxfInt64 = 160,
    kDxfXInt16 = 170,
    kDxfNormalX = 210,
    kDxfBool = 290,
    kDxfXTextString = 300,
    kDxfBinaryChunk = 310,
    kDxfArbHandle = 320,
    kDxfSoftPointerId = 330,
    kDxfHardPointerId = 340,
    kDxfSoftOwnershipId = 350,
    kDxfHardOwnershipId = 360,
    kDxfComment = 999,
    kDxfXdAsciiString = 1000,
    kDxfXdInteger16 = 1070,
    kDxfXdInteger32 = 1071,
  };
};

#endif  // !_WIN32
