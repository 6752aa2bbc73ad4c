#include "entry/property_set.h"

#include <new>

#include <gtest/gtest.h>

#include "entry/exceptions.h"
#include "tests/entry/fake_host.h"
#include "tests/entry/log_file.h"

namespace
{

class PropertySetTest : public testing::Test
{
protected:
  PropertySetTest() { OFX::suites().property = &fake::propertySuite; }
  ~PropertySetTest() override { OFX::suites() = {}; }

  fake::Properties properties_;
  OFX::PropertySet set_{properties_.handle()};
};

TEST_F(PropertySetTest, ValuesOfEachTypeGoInAndOut)
{
  int pointee = 0;
  set_.setInt("i", 3);
  set_.setInt("i", 5, 1);
  set_.setDouble("d", 0.5);
  set_.setString("s", "text");
  set_.setPointer("p", &pointee);
  EXPECT_EQ(set_.getInt("i"), 3);
  EXPECT_EQ(set_.getInt("i", 1), 5);
  EXPECT_EQ(set_.dimension("i"), 2);
  EXPECT_EQ(set_.getDouble("d"), 0.5);
  EXPECT_EQ(set_.getString("s"), "text");
  EXPECT_EQ(set_.getPointer("p"), &pointee);
}

TEST_F(PropertySetTest, AnUnknownPropertyIsRaisedAndNamed)
{
  const LogFile log;
  EXPECT_THROW(set_.getInt("Odd"), OFX::Exception::PropertyUnknownToHost);
  EXPECT_THROW(set_.getDouble("Odd", 2), OFX::Exception::PropertyUnknownToHost);
  EXPECT_THROW(set_.getPointer("Odd"), OFX::Exception::PropertyUnknownToHost);
  EXPECT_THROW(set_.getString("Odd"), OFX::Exception::PropertyUnknownToHost);
  EXPECT_EQ(log.text(), "ERROR : Failed on getting int property Odd[0], host returned status kOfxStatErrUnknown;\n"
                        "ERROR : Failed on getting double property Odd[2], host returned status kOfxStatErrUnknown;\n"
                        "ERROR : Failed on getting pointer property Odd[0], host returned status kOfxStatErrUnknown;\n"
                        "ERROR : Failed on getting string property Odd[0], host returned status kOfxStatErrUnknown;\n");
}

TEST_F(PropertySetTest, ARefusedWriteNamesTheValue)
{
  const LogFile log;
  properties_.refusals = {{"A", kOfxStatErrUnsupported}, {"B", kOfxStatErrMemory}, {"C", kOfxStatErrValue}};
  EXPECT_THROW(set_.setString("A", "hello"), OFX::Exception::PropertyUnknownToHost);
  EXPECT_THROW(set_.setInt("B", 7, 1), std::bad_alloc);
  EXPECT_THROW(set_.setDouble("C", 0.25), OFX::Exception::Suite);
  EXPECT_EQ(log.text(),
            "ERROR : Failed on setting string property A[0] to hello, host returned status kOfxStatErrUnsupported;\n"
            "ERROR : Failed on setting int property B[1] to 7, host returned status kOfxStatErrMemory;\n"
            "ERROR : Failed on setting double property C[0] to 0.25, host returned status kOfxStatErrValue;\n");
}

TEST_F(PropertySetTest, OptionalReadsAnswerNothing)
{
  EXPECT_EQ(set_.findInt("Odd"), std::nullopt);
  EXPECT_EQ(set_.findDouble("Odd"), std::nullopt);
  EXPECT_EQ(set_.findString("Odd"), std::nullopt);
  set_.setInt("i", 3);
  EXPECT_EQ(set_.findInt("i"), 3);
}

}  // namespace
