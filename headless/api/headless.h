/* The C API by which hosts and tests start and drive a headless application. Exported by the
 * headless platform's shared library. Names and meanings are fixed: add, never rename.
 * Every int result is 0 on success; a failure leaves the drawing as it was and sets the message
 * that HeadlessLastError returns. */
#ifndef KD_HEADLESS_API_H
#define KD_HEADLESS_API_H

#if defined(_WIN32)
#  define HEADLESS_API __declspec(dllimport)
#else
#  define HEADLESS_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef struct HeadlessApp HeadlessApp;

/* An AutoCAD application with one new, empty drawing as the active document. options is NULL
 * or a comma-separated list:
 *   no-civil    the Civil 3D base module is not among the loaded modules
 *   no-land     the Civil 3D land application object cannot be created
 *   no-roadway  the Civil 3D roadway application object cannot be created
 *   root=DIR    where Windows drive paths are mapped: C:\x\y is DIR/c/x/y
 * NULL on failure (an unknown option, say); HeadlessLastError(NULL) then tells why.
 * Several applications may exist at once, each with its own drawing. */
HEADLESS_API HeadlessApp* HeadlessStart(const char* options);

/* The CWinApp* a host passes to the module's Initialize. Owned by app. */
HEADLESS_API void* HeadlessGetWinApp(HeadlessApp* app);

/* Imports alignments (every entity kind, spirals into Civil 3D's spiral groups) with their
 * stationing and station equations, and their layout profiles, from a LandXML file (1.0, 1.1,
 * 1.2) into the active drawing, as Civil 3D's own LandXML import does. options is NULL or
 * "site=NAME": the alignments go into that site (made if absent) instead of being siteless.
 * Names the drawing has already get " (1)", " (2)", ... Surfaces in the file are not imported
 * yet. 0 on success. */
HEADLESS_API int HeadlessImportLandXml(HeadlessApp* app, const char* path, const char* options);

/* Writes the active drawing's alignments and profiles as LandXML 1.2. 0 on success. */
HEADLESS_API int HeadlessExportLandXml(HeadlessApp* app, const char* path);

/* Message of the last failed call on app, "" if none. With app NULL: the last failed
 * HeadlessStart of the calling thread. */
HEADLESS_API const char* HeadlessLastError(HeadlessApp* app);

/* Ends the application and frees everything it made. NULL is ignored. */
HEADLESS_API void HeadlessStop(HeadlessApp* app);

/* Sets the model-space background colour that acedGetCurrentColors reports, for every
 * application of the process (AutoCAD's display options are per process). colorValue is a
 * colour reference (red in bits 0-7, green 8-15, blue 16-23); values below 256 are kept as they
 * are, as AutoCAD keeps them. Default: RGB 33, 40, 48 (0x00302821), AutoCAD's dark background. */
HEADLESS_API void HeadlessSetModelBackground(unsigned int colorValue);

/* Number of headless platform objects alive in the process: COM objects of every kind. A host
 * or test that has released everything it was given sees it return to its earlier value. */
HEADLESS_API long HeadlessLiveObjects(void);

/* Writes the active drawing as an ASCII DXF file (AutoCAD 2004 format, AC1018) that CAD programs
 * open: its layers, line types, text styles, blocks, entities, groups, extension dictionaries with
 * their Xrecords, with every object's handle and owner. The file is written beside path and
 * renamed into place when complete: a failed save leaves no file (an existing file stays as it
 * was) and HeadlessLastError says why. 0 on success. */
HEADLESS_API int HeadlessSaveDxf(HeadlessApp* app, const char* path);

/* Opens a DXF file (as HeadlessSaveDxf writes them) as a new drawing, made the active document:
 * the same entities, handles, extension dictionaries and tags. 0 on success. */
HEADLESS_API int HeadlessOpenDxf(HeadlessApp* app, const char* path);

#ifdef __cplusplus
}
#endif

#endif /* KD_HEADLESS_API_H */
