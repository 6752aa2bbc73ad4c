// The three reports, by text.
#include "gpu/reports.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/gpu/invented_machine.h"

namespace
{
using namespace morvellan::gpu;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TEST(About, Text)
{
  const std::string text = aboutText();
  EXPECT_THAT(text, StartsWith("\nMorvellan for Natron, ver 3.7.\n\n\n"));
  EXPECT_THAT(text, HasSubstr("\n  Film Lab Processing, Cine Camera and Print Film Stocks, Halation, Film Grain, "
                              "Resizing, Textures, Details.\n"));
  EXPECT_THAT(text, EndsWith("\n Note : Morvellan requires nVidia Studio - or Game Ready - Driver ver. 527.41, or "
                             "higher"));
}

TEST(CudaInfo, WithoutNvidiaHardwareOnlyFailures)
{
  InventedMachine machine;
  machine.cudaInBuild = false;
  machine.nvmlInitStatus = 12;
  machine.nvapiMissing = true;
  EXPECT_EQ(cudaInfoText(machine), "\n    Morvellan : Failed to initialise nVidia's NVML library"
                                   "\n    Morvellan : Failed to retrieve CUDA devices through nVidia's NVML library"
                                   "\n    Morvellan : Found no available GPU device(s) that support CUDA"
                                   "\n    Morvellan : Failed to find nVidia's NVAPI Library"
                                   "\nMorvellan : Failed to shutdown the NVML library. Error : 1");
}

TEST(CudaInfo, EachFailureHasItsLine)
{
  InventedMachine machine = machineWith(1);
  machine.nvmlOrder = std::vector<int>{};
  machine.cudaCountStatus = 35;
  machine.nvapiInitStatus = -2;
  machine.nvmlShutdownStatus = 999;
  EXPECT_EQ(cudaInfoText(machine),
            "\n    Morvellan : Failed to find any CUDA devices through nVidia's NVML library"
            "\n    Morvellan : Failed to get the CUDA device count through nVidia's CUDA API. cudaGetDeviceCount() "
            "returned : 35, invented error 35"
            "\n    Morvellan : Failed to load nVidia's NVAPI Library. Error : NVAPI_INVENTED -2"
            "\nMorvellan : Failed to shutdown the NVML library. Error : 999");
  machine.nvapiInitStatus = 0;
  machine.nvapiVersionStatus = -3;
  EXPECT_THAT(cudaInfoText(machine), HasSubstr("\n    Morvellan : Failed to retrieve the nVidia Graphics Driver "
                                               "version. Error : NVAPI_INVENTED -3"));
  EXPECT_EQ(machine.nvapiOpen, 0);
}

TEST(CudaInfo, OneGpu)
{
  InventedMachine machine = machineWith(1);
  machine.gpus[0].pci = {.domain = 1, .bus = 101, .device = 10};
  EXPECT_EQ(cudaInfoText(machine), "\n    Morvellan : nVidia Graphics Driver ver : 580.65\n\n.-"
                                   "\n    Number of available CUDA GPUs : 1\n\n.-"
                                   "\n    CUDA - Driver ver : 12.8, Runtime ver : 12.4\n\n.-"
                                   "\n    GPU 0, GPU-0, Default.-"
                                   "\n    CC Major.Minor : 8.6\n.-"
                                   "\n    GPU Utilization : 7 Percent\n.-"
                                   "\n    10 Multiprocessors (MP), 128 Cores / MP, 1280 Total Cores\n.-"
                                   "\n    1D Textures : 131072    , 2D Textures : 131072 x 65536\n.-"
                                   "\n    CUDA (deviceQuery) Device 0, PCIe: Domain 1:Bus 101:ID 10 (Dec.)"
                                   "\n    NVML (nVidia-smi) Device 0, PCIe: Domain 0x0001:Bus 0x65:ID 0x0a (Hex.)\n.-"
                                   "\n    Compute Mode : Default.-"
                                   "\n    Device Driver Mode : WDDM. - \n\n.-");
  EXPECT_EQ(machine.nvmlOpen, 0);
  EXPECT_EQ(machine.nvapiOpen, 0);
}

TEST(CudaInfo, WhatADeviceCanBe)
{
  InventedMachine machine = machineWith(5);
  machine.gpus[1].computeMode = 1;
  machine.gpus[2].computeMode = 2;
  machine.gpus[3].computeMode = 3;
  machine.gpus[4].unreadable = {20};
  machine.gpus[0].major = 6;
  machine.gpus[0].minor = 0;
  machine.gpus[1].utilisation.reset();
  machine.gpus[2].utilisationFails = true;
  machine.gpus[3].tcc = true;
  const std::string text = cudaInfoText(machine);
  for (const char* line :
       {"GPU 1, GPU-1, Exclusive.-", "GPU 2, GPU-2, Prohibited.-", "GPU 3, GPU-3, Exclusive Process.-",
        "GPU 4, GPU-4, Unknown.-", "    Morvellan requires CC 6.1 (Pascal), or higher. Found : 6.0\n.-",
        "\n    GPU Utilization query unsupported", "\n    Failed to get GPU Utilization info",
        "10 Multiprocessors (MP), 64 Cores / MP, 640 Total Cores", "\n    Device Driver Mode : TCC"})
    EXPECT_THAT(text, HasSubstr(line));
}

TEST(CudaInfo, PeersOfEveryOrderedPair)
{
  InventedMachine machine = machineWith(2);
  EXPECT_THAT(cudaInfoText(machine),
              EndsWith("\n    Peer-to-Peer GPU access from : GPU-0 (Dev 0) to : GPU-1 (Dev 1) - Yes\n.-"
                       "\n    Peer-to-Peer GPU access from : GPU-1 (Dev 1) to : GPU-0 (Dev 0) - Yes\n.-"));
  machine.peers = false;
  EXPECT_THAT(cudaInfoText(machine), HasSubstr("from : GPU-1 (Dev 1) to : GPU-0 (Dev 0) - No"));
  EXPECT_THAT(cudaInfoText(machine), Not(HasSubstr("Yes")));
}

TEST(CudaInfo, FailingCallsNameTheirExpression)
{
  InventedMachine machine = machineWith(2);
  machine.gpus[0].propertiesFail = true;
  machine.peerStatus = 101;
  machine.nvmlPciStatus = 999;
  machine.cudaVersionStatus = 3;
  const std::string text = cudaInfoText(machine);
  EXPECT_THAT(text, HasSubstr("\n    cudaGetDeviceProperties(&prop[i], i), cuda_report.cpp : invented error 46"));
  EXPECT_THAT(text, HasSubstr("\n    cudaDeviceCanAccessPeer(&can_access_peer, gpuid[i], gpuid[j]), cuda_report.cpp : "
                              "invented error 101"));
  EXPECT_THAT(text, HasSubstr("cudaDriverGetVersion"));
  EXPECT_THAT(text, HasSubstr("Failed to get the PCI information of NVML (nVidia-smi) Device 1"));
  EXPECT_THAT(text, HasSubstr("GPU 1, GPU-1, Default.-"));
}

TEST(CudaInfo, TheLinuxDriverIsToldByNvml)
{
  InventedMachine machine = machineWith(1);
  machine.linuxDriver = true;
  machine.nvapiMissing = true;
  EXPECT_THAT(cudaInfoText(machine), HasSubstr("Failed to find nVidia's NVAPI Library"));
  machine.nvmlVersion = "570.124.06";
  const std::string text = cudaInfoText(machine);
  EXPECT_THAT(text, HasSubstr("\n    Morvellan : nVidia Graphics Driver ver : 570.124\n\n.-"));
  EXPECT_THAT(text, HasSubstr("\n    GPU Utilization query unsupported"));
  EXPECT_EQ(machine.nvmlOpen, 0);

  // Without the interface for the version alone, the rest of NVAPI is asked.
  machine.nvapiMissing = false;
  machine.nvapiVersionStatus = nvapiNoImplementation;
  EXPECT_THAT(cudaInfoText(machine), AllOf(HasSubstr("\n    Morvellan : nVidia Graphics Driver ver : 570.124\n\n.-"),
                                           HasSubstr("\n    GPU Utilization : 7 Percent")));
  EXPECT_EQ(machine.nvapiOpen, 0);
}

TEST(CudaInfo, AnNvapiThatFailsIsToldAlsoOnLinux)
{
  InventedMachine machine = machineWith(1);
  machine.linuxDriver = true;
  machine.nvmlVersion = "570.124.06";
  machine.nvapiVersionStatus = -1;
  EXPECT_THAT(cudaInfoText(machine),
              StartsWith("\n    Morvellan : Failed to retrieve the nVidia Graphics Driver version. Error : "
                         "NVAPI_INVENTED -1\n    Number of available CUDA GPUs : 1"));
  machine.nvapiInitStatus = -6;
  EXPECT_THAT(cudaInfoText(machine),
              StartsWith("\n    Morvellan : Failed to load nVidia's NVAPI Library. Error : NVAPI_INVENTED -6\n    "
                         "Number of available CUDA GPUs : 1"));
  EXPECT_EQ(machine.nvapiOpen, 0);
  EXPECT_EQ(machine.nvmlOpen, 0);
}

ClipFacts hdClip()
{
  return {.available = true,
          .components = "OfxImageComponentRGBA",
          .pixelDepth = "OfxBitDepthFloat",
          .premultiplication = "OfxImageAlphaPremultiplied",
          .fieldOrder = "OfxFieldNone",
          .connected = true,
          .continuousSamples = false,
          .format = {0, 0, 1920, 1080},
          .pixelAspectRatio = 1.0,
          .frameRate = 23.976,
          .frameRange = {1, 100},
          .regionOfDefinition = {0, 0, 1920, 1080.5}};
}

TEST(ClipInfo, WholeText)
{
  ClipFacts output = hdClip();
  output.continuousSamples = true;
  EXPECT_EQ(clipInfoText(hdClip(), output, {1.0, 0.5}), "Morvellan Clip Info :\n\n"
                                                        "Input : \n"
                                                        "    RGBA - 32f BitDepthFloat\n"
                                                        "    Premultiplication : PreMultiplied\n"
                                                        "    Field order : None\n"
                                                        "    Node input : Connected\n"
                                                        "    Discontinuous samples\n"
                                                        "    Resolution : 0, 0, 1920, 1080\n"
                                                        "    Pixel aspect ratio : 1\n"
                                                        "    Frame rate : 23.976\n"
                                                        "    Frame range : 1 ... 100\n"
                                                        "    Region of definition : 0, 0, 1920, 1080.5\n\n"
                                                        "Output : \n"
                                                        "    RGBA - 32f BitDepthFloat\n"
                                                        "    Premultiplication : PreMultiplied\n"
                                                        "    Field order : None\n"
                                                        "    Node output : Connected\n"
                                                        "    Continuous samples\n"
                                                        "    Resolution : 0, 0, 1920, 1080\n"
                                                        "    Pixel aspect ratio : 1\n"
                                                        "    Frame rate : 23.976\n"
                                                        "    Frame range : 1 ... 100\n"
                                                        "    Region of definition : 0, 0, 1920, 1080.5\n\n"
                                                        "    Render Scale : 1, 0.5");
}

TEST(ClipInfo, UnavailableClips)
{
  EXPECT_EQ(clipInfoText({}, {}, {1.0, 1.0}), "Morvellan Clip Info :\n\n"
                                              "Input : \n    Input Clip info is unavailable\n\n"
                                              "Output : \n    Output Clip info unavailable\n\n"
                                              "    Render Scale : 1, 1");
}

TEST(ClipInfo, AnUnconnectedSourceStillHasTheOutputsSection)
{
  ClipFacts source = hdClip();
  source.connected = false;
  source.continuousSamples = true;
  ClipFacts output = hdClip();
  output.connected = false;
  const std::string text = clipInfoText(source, output, {1.0, 1.0});
  EXPECT_THAT(text, HasSubstr("\n    Node input : Not connected\n   Continuous samples\n"));
  EXPECT_THAT(text, HasSubstr("Output : \n    RGBA"));
  EXPECT_THAT(text, HasSubstr("\n    Node output : Not connected\n    Discontinuous samples\n"));
}

TEST(ClipInfo, EveryWord)
{
  const auto with = [](auto change)
  {
    ClipFacts clip = hdClip();
    change(clip);
    return clipInfoText(clip, {}, {1.0, 1.0});
  };
  for (const auto& [value, shown] :
       {std::pair{"OfxBitDepthNone", "RGBA - 0 BitDepthNone\n"},
        std::pair{"OfxBitDepthByte", "RGBA - 8u BitDepthUByte:\n"},
        std::pair{"OfxBitDepthShort", "RGBA - 16u BitDepthUShort\n"},
        std::pair{"OfxBitDepthHalf", "RGBA - 16f BitDepthHalf\n"},
        std::pair{"OfxBitDepthCustom", "RGBA - BitDepthCustom\n"}, std::pair{"", "RGBA[Unknown bit depth]\n"}})
    EXPECT_THAT(with([&, text = value](ClipFacts& clip) { clip.pixelDepth = text; }), HasSubstr(shown));
  for (const auto& [value, shown] :
       {std::pair{"OfxImageOpaque", ": Opaque\n"}, std::pair{"OfxImageAlphaUnPremultiplied", ": UnPreMultiplied\n"},
        std::pair{"?", ": [Unknown premult]\n"}})
    EXPECT_THAT(with([&, text = value](ClipFacts& clip) { clip.premultiplication = text; }), HasSubstr(shown));
  for (const auto& [value, shown] :
       {std::pair{"OfxFieldBoth", ": Both\n"}, std::pair{"OfxFieldLower", ": Lower\n"},
        std::pair{"OfxFieldUpper", ": Upper\n"}, std::pair{"OfxFieldSingle", ": Single\n"},
        std::pair{"OfxFieldDoubled", ": Doubled\n"}, std::pair{"", ": [Unknown field order]\n"}})
    EXPECT_THAT(with([&, text = value](ClipFacts& clip) { clip.fieldOrder = text; }), HasSubstr(shown));
  EXPECT_THAT(with([](ClipFacts& clip) { clip.components = "OfxImageComponentNone"; }), HasSubstr("    None - 32f"));
}

}  // namespace
