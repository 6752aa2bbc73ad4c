// Extensions of the host Natron.
#pragma once

extern "C"
{

  inline constexpr const char* kNatronOfxHostName = "fr.inria.Natron";
  inline constexpr const char* kNatronOfxHostIsNatron = "NatronOfxHostIsNatron";
  inline constexpr const char* kNatronOfxParamHostPropSupportsDynamicChoices =
      "NatronOfxParamHostPropSupportsDynamicChoices";
  inline constexpr const char* kNatronOfxParamPropChoiceCascading = "NatronOfxParamPropChoiceCascading";
  inline constexpr const char* kNatronOfxImageEffectPropProjectId = "NatronOfxImageEffectPropProjectId";
  inline constexpr const char* kNatronOfxImageEffectPropInstanceId = "NatronOfxImageEffectPropInstanceId";
  inline constexpr const char* kNatronOfxPropDescriptionIsMarkdown = "NatronOfxPropDescriptionIsMarkdown";
  // The frame of a clip in pixels: x1, y1, x2, y2.
  inline constexpr const char* kOfxImageClipPropFormat = "OfxImageClipPropFormat";
  // Where the next parameter stands: 1 below a divider, 2 on the same line.
  inline constexpr const char* kOfxParamPropLayoutHint = "OfxParamPropLayoutHint";

}  // extern "C"
