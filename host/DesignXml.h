// design.xml: the alignments and profiles as the module read them back, as a LandXML model.
#pragma once

#include "host/RunModel.h"
#include "landxml/Model.h"

namespace host {

// Lengths stay in the input's linear unit and angles are written in the input's angular
// units; every element carries its start station, length and directions.
landxml::CModel DesignModel(const CRunResult& run);

// The read-back profile's PVIs as LandXML vertices (PVI, ParaCurve, UnsymParaCurve, CircCurve).
std::vector<landxml::CProfileVertex> ProfileVertices(const std::vector<CC3dProfilePVI>& pvis);

}  // namespace host
