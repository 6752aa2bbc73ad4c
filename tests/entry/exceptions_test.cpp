#include "entry/exceptions.h"

#include <new>
#include <stdexcept>

#include <gtest/gtest.h>

#include "ofx/ofxImageEffect.h"

namespace
{

template <class E>
OfxStatus raised(const E& exception)
{
  return OFX::statusOf([&]() -> OfxStatus { throw exception; });
}

TEST(Exceptions, BecomeStatuses)
{
  EXPECT_EQ(OFX::statusOf([] { return kOfxStatReplyDefault; }), kOfxStatReplyDefault);
  EXPECT_EQ(raised(OFX::Exception::Suite(kOfxStatErrUnsupported)), kOfxStatErrUnsupported);
  EXPECT_EQ(raised(OFX::Exception::Suite(kOfxStatFailed)), kOfxStatFailed);
  EXPECT_EQ(raised(OFX::Exception::HostInadequate("x")), kOfxStatErrMissingHostFeature);
  EXPECT_EQ(raised(OFX::Exception::PropertyUnknownToHost("x")), kOfxStatErrMissingHostFeature);
  EXPECT_EQ(raised(std::bad_alloc()), kOfxStatErrMemory);
  EXPECT_EQ(raised(std::runtime_error("x")), kOfxStatFailed);
  EXPECT_EQ(raised(42), kOfxStatFailed);
}

TEST(Exceptions, StatusesHaveTheirStandardNames)
{
  EXPECT_EQ(OFX::statusName(kOfxStatOK), "kOfxStatOK");
  EXPECT_EQ(OFX::statusName(kOfxStatFailed), "kOfxStatFailed");
  EXPECT_EQ(OFX::statusName(kOfxStatErrMissingHostFeature), "kOfxStatErrMissingHostFeature");
  EXPECT_EQ(OFX::statusName(kOfxStatErrUnsupported), "kOfxStatErrUnsupported");
  EXPECT_EQ(OFX::statusName(kOfxStatErrBadHandle), "kOfxStatErrBadHandle");
  EXPECT_EQ(OFX::statusName(kOfxStatErrValue), "kOfxStatErrValue");
  EXPECT_EQ(OFX::statusName(kOfxStatReplyDefault), "kOfxStatReplyDefault");
  EXPECT_EQ(OFX::statusName(kOfxStatErrImageFormat), "kOfxStatErrImageFormat");
  EXPECT_EQ(OFX::statusName(77), "unknown status 77");
  EXPECT_EQ(OFX::statusName(-1), "unknown status -1");
}

TEST(Exceptions, FailuresOfCallsAreRaised)
{
  EXPECT_NO_THROW(OFX::throwIfFailed(kOfxStatOK));
  EXPECT_NO_THROW(OFX::throwIfFailed(kOfxStatReplyDefault));
  EXPECT_THROW(OFX::throwIfFailed(kOfxStatErrMemory), std::bad_alloc);
  EXPECT_THROW(OFX::throwIfFailed(kOfxStatErrMissingHostFeature), OFX::Exception::HostInadequate);
  try
  {
    OFX::throwIfFailed(kOfxStatErrBadIndex);
    FAIL() << "nothing was raised";
  }
  catch (const OFX::Exception::Suite& e)
  {
    EXPECT_EQ(e.status(), kOfxStatErrBadIndex);
  }
}

}  // namespace
