// Constants shared by the session and the handles it makes.
#pragma once

namespace civil3d {

inline constexpr const wchar_t* CIVIL3DPRODUCTCODE = L"F000";
inline constexpr const wchar_t* AECCLANDAPP = L"AeccXUiLand.AeccApplication.10.5";
inline constexpr const wchar_t* AECCROADWAYAPP = L"AeccXUiRoadway.AeccRoadwayApplication.10.5";
inline constexpr const wchar_t* AECCTINCREATIONDATA = L"AeccXLand.AeccTinCreationData.10.5";
// The identifier keeps its historical spelling.
inline constexpr const char* DEFAULT_ALINGMENT_STYLE_NAME = "Basic";
inline constexpr const char* DEFAULT_LABEL_STYLE_SET_NAME = "_No Labels";
inline constexpr const char* FAIL_SAFE_STYLE_NAME = "Standard";
inline constexpr double FLOAT_TOLERANCE = 1e-6;
inline constexpr double M_1PI = 3.14159265358979323846;
inline constexpr double M_2PI = 2.0 * M_1PI;

// The module whose presence among AutoCAD's loaded applications proves Civil 3D is there.
inline constexpr const wchar_t* REQUIRED_CIVIL_MODULE = L"aecbase.dbx";
// Fixed install location of the companion corridor engine assembly.
inline constexpr const wchar_t* COMPANION_ASSEMBLY_PATH =
    L"C:\\program files\\common files\\Ostrevan Works\\KdCivil3d\\3.0\\KdCivil3dNetDll.dll";

}  // namespace civil3d
