// Civil 3D on a headless AutoCAD application: the land and roadway application objects (made by
// GetInterfaceObject from their ProgIDs) and the faces of documents, databases and land objects.
#pragma once

namespace headless {
class AcadApplication;
}

namespace headless::land {

// Registers Civil 3D with the application: its land and roadway applications (each unless the
// application was started without it, in which case its ProgID stays unknown and
// GetInterfaceObject fails with CO_E_CLASSSTRING), and the land document, database and object
// faces. Call once, before any face of the application is handed out.
void Install(AcadApplication& application);

}  // namespace headless::land
