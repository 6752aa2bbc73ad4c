// File URIs by value, good and broken ones.
#include "files/dialog/file_uri.h"

#include <gtest/gtest.h>

namespace
{

using morvellan::files::pathOfFileUri;

TEST(FileUri, ItsPathIsResolved)
{
  EXPECT_EQ(pathOfFileUri("file:///home/a/Look.prm"), "/home/a/Look.prm");
  EXPECT_EQ(pathOfFileUri("file://localhost/a"), "/a");
  EXPECT_EQ(pathOfFileUri("file:///a%20b/%C3%A9%25.prm"), "/a b/\xC3\xA9%.prm");
  EXPECT_EQ(pathOfFileUri("file:///a%2fb"), "/a/b");
}

TEST(FileUri, OthersHaveNone)
{
  for (const char* uri : {"", "/a", "http://a/b", "file://host/a", "file:///a%", "file:///a%2", "file:///a%zz",
                          "file:///a%00b", "file:///a%+1"})
    EXPECT_EQ(pathOfFileUri(uri), std::nullopt) << uri;
  EXPECT_EQ(pathOfFileUri(std::string("file:///a") + '\0' + "b"), std::nullopt);
}

}  // namespace
