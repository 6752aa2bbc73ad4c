// What the host says of itself, read once at load into a process-wide record and released at unload. The layer and the
// effect ask this record and never the host's property set again.
#pragma once

#include <string>
#include <vector>

#include "ofx/ofxCore.h"

namespace OFX
{

struct HostDescription
{
  std::vector<int> apiVersion;  // major first; empty where the host does not say
  std::string name;             // such as "fr.inria.Natron"
  std::string label;
  std::vector<int> version;
  // Capabilities; a host that does not answer is taken to lack the thing.
  bool isBackground = false;
  bool supportsOverlays = false;
  bool supportsMultiResolution = false;
  bool supportsTiles = false;
  bool temporalClipAccess = false;
  bool supportsMultipleClipDepths = false;
  bool supportsMultipleClipPARs = false;
  bool supportsStringAnimation = false;
  bool supportsCustomInteract = false;
  bool supportsChoiceAnimation = false;
  bool supportsBooleanAnimation = false;
  bool supportsCustomAnimation = false;
  int maxParameters = -1;  // -1: no limit
  int maxPages = -1;
  // Extensions of Natron.
  bool isNatron = false;
  bool supportsDynamicChoices = false;
};

/// Reads the host into the record. A second attempt is logged as an error and leaves the record as it is.
void createHostDescription(const OfxHost& host);

/// The record, or null before load and after unload.
const HostDescription* hostDescription();

void releaseHostDescription();

}  // namespace OFX
