// Acad::ErrorStatus (acadstrc.h): the status every ObjectARX database call returns, with
// AutoCAD's numeric values. Only the statuses this platform reports are listed.
#pragma once

#if defined(_WIN32)
#  include <acadstrc.h>
#else

struct Acad {
  enum ErrorStatus {
    eOk = 0,
    eNotImplementedYet = 1,
    eNotApplicable = 2,
    eInvalidInput = 3,
    eOutOfMemory = 6,
    eInvalidOpenState = 8,
    eHandleExists = 10,
    eNullHandle = 11,
    eUnknownHandle = 13,
    eNullObjectPointer = 15,
    eNullObjectId = 16,
    eNullBlockName = 17,
    eContainerNotEmpty = 18,
    eNullEntityPointer = 20,
    eIllegalEntityType = 21,
    eKeyNotFound = 22,
    eDuplicateKey = 23,
    eInvalidIndex = 24,
    eAlreadyInDb = 26,
    eInvalidExtents = 30,
    eInvalidAdsName = 31,
    eInvalidSymbolTableName = 32,
    eInvalidKey = 33,
    eWrongObjectType = 34,
    eWrongDatabase = 35,
    eNotOpenForRead = 44,
    eNotOpenForWrite = 45,
    eNotThatKindOfClass = 46,
    eInvalidBlockName = 47,
    eInvalidResBuf = 51,
    eVertexAfterFace = 54,
    eInvalidFaceVertexIndex = 55,
    eInvalidMeshVertexIndex = 56,
    eWasErased = 80,
    ePermanentlyErased = 81,
    eWasOpenForRead = 82,
    eWasOpenForWrite = 83,
    eWasNotifying = 85,
    eWasOpenForNotify = 86,
    eOnLockedLayer = 87,
    eAtMaxReaders = 90,
    eNotAnEntity = 93,
    eHadMultipleReaders = 94,
    eDuplicateRecordName = 95,
    eSelfReference = 97,
    eWasNotOpenForWrite = 100,
    eCannotBeErasedByCaller = 105,
    eWasNotErased = 107,
    eNoDatabase = 124,
    eIteratorDone = 129,
    eNotInBlock = 131,
    eCannotScaleNonUniformly = 136,
    eNotInDatabase = 137,
    eOutOfRange = 151,
    eDegenerateGeometry = 153,
    eInvalidNormal = 291,
    eLockViolation = 320,
    eNoDocument = 330,
    eNotFromThisDocument = 331,
    eInvalidObjectId = 600,
  };
};

#endif  // !_WIN32
