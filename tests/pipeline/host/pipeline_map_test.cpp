// docs/pipelines.md is what the program prints.
#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

TEST(PipelineMap, TheDocumentIsWhatTheProgramPrints)
{
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(MORVELLAN_PIPELINE_MAP, "r"), pclose);
  ASSERT_TRUE(pipe);
  std::string printed;
  char block[4096];
  while (const size_t n = fread(block, 1, sizeof block, pipe.get()))
    printed.append(block, n);
  std::ifstream file(MORVELLAN_SOURCE_DIR "/docs/pipelines.md");
  std::stringstream document;
  document << file.rdbuf();
  ASSERT_FALSE(printed.empty());
  EXPECT_EQ(document.str(), printed) << "run build/release/bin/pipeline-map > docs/pipelines.md";
}
