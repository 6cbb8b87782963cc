#include <gmock/gmock.h>

#include <stdexcept>

#include "FaultPlan.h"

namespace {

using namespace virtualprinter;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// What add() throws for a text.
std::string refusal(const std::string& text) {
  FaultPlan plan;
  try {
    plan.add(text);
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
  return "accepted";
}

TEST(FaultPlanTest, StrikesAtItsStepOnly) {
  FaultPlan plan;
  plan.add("close@mid-image");
  plan.add("extra@mid-image=0a1B");
  ASSERT_EQ(plan.at(Step::MidImage).size(), 2u);
  EXPECT_EQ(plan.at(Step::MidImage)[0]->kind, FaultKind::Close);
  EXPECT_THAT(plan.at(Step::MidImage)[1]->bytes, ElementsAre(0x0a, 0x1b));
  EXPECT_THAT(plan.at(Step::Image), IsEmpty());
}

TEST(FaultPlanTest, KnowsEveryStepByItsName) {
  for (const Step step : allSteps()) {
    FaultPlan plan;
    plan.add("reset@" + std::string(stepName(step)));
    EXPECT_EQ(plan.at(step).size(), 1u) << stepName(step);
  }
  EXPECT_EQ(allSteps().size(), 20u);
}

TEST(FaultPlanTest, FaultWithoutAStepHoldsForEveryReply) {
  FaultPlan plan;
  plan.add("wrong-status=0x10");
  EXPECT_EQ(plan.find(FaultKind::WrongStatus, Step::IdResponse)->number, 16u);
  EXPECT_EQ(plan.find(FaultKind::WrongStatus, Step::BurnReply)->number, 16u);
  EXPECT_EQ(plan.find(FaultKind::WrongPrefix, Step::BurnReply), nullptr);
  EXPECT_THAT(plan.at(Step::BurnReply), IsEmpty());
}

TEST(FaultPlanTest, FaultOfOneReplyLeavesTheOthersAlone) {
  FaultPlan plan;
  plan.add("wrong-command@burn-reply");
  EXPECT_EQ(plan.find(FaultKind::WrongCommand, Step::IdResponse), nullptr);
  EXPECT_EQ(plan.find(FaultKind::WrongCommand, Step::BurnReply)->number, 0x63u);
}

TEST(FaultPlanTest, PaceIsBytesAndMilliseconds) {
  FaultPlan plan;
  plan.add("dribble=3/20");
  EXPECT_EQ(plan.find(FaultKind::Dribble)->pace->size, 3u);
  EXPECT_EQ(plan.find(FaultKind::Dribble)->pace->period, std::chrono::milliseconds(20));
}

TEST(FaultPlanTest, KnowsWhichMediumAFaultBelongsTo) {
  FaultPlan plan;
  plan.add("close@uel");
  EXPECT_EQ(plan.foreignTo(Medium::Network), nullptr);
  plan.add("unplug@uel");
  EXPECT_EQ(plan.foreignTo(Medium::Network)->text, "unplug@uel");
  EXPECT_EQ(plan.foreignTo(Medium::Usb), nullptr);
  plan.add("refuse");
  EXPECT_EQ(plan.foreignTo(Medium::Usb)->text, "refuse");
}

TEST(FaultPlanTest, RefusesWhatItDoesNotUnderstand) {
  EXPECT_EQ(refusal("clos@uel"), "fault \"clos@uel\": there is no such fault");
  EXPECT_EQ(refusal(""), "fault \"\": there is no such fault");
  EXPECT_EQ(refusal("close"), "fault \"close\": close needs a step: @STEP");
  EXPECT_EQ(refusal("close@nowhere"), "fault \"close@nowhere\": there is no step \"nowhere\"");
  EXPECT_EQ(refusal("close@uel=3"), "fault \"close@uel=3\": close takes no value");
  EXPECT_EQ(refusal("merge@uel"), "fault \"merge@uel\": merge cannot strike at uel");
  EXPECT_EQ(refusal("wrong-status@uel"),
            "fault \"wrong-status@uel\": wrong-status cannot strike at uel");
  EXPECT_EQ(refusal("data-length"), "fault \"data-length\": data-length needs a value: =N");
  EXPECT_EQ(refusal("data-length=-1"), "fault \"data-length=-1\": \"-1\" is not a number");
  EXPECT_EQ(refusal("data-length=3x"), "fault \"data-length=3x\": \"3x\" is not a number");
  EXPECT_EQ(refusal("dribble=3"), "fault \"dribble=3\": a pace is BYTES/MILLISECONDS");
  EXPECT_EQ(refusal("dribble=0/3"), "fault \"dribble=0/3\": a pace has at least one byte");
  EXPECT_EQ(refusal("slow=1/3600001"), "fault \"slow=1/3600001\": a pace takes an hour at most");
  EXPECT_EQ(refusal("extra@uel=0"), "fault \"extra@uel=0\": bytes are pairs of hexadecimal digits");
  EXPECT_EQ(refusal("extra@uel=0g"),
            "fault \"extra@uel=0g\": bytes are pairs of hexadecimal digits");
}

TEST(FaultPlanTest, HelpShowsHowEachFaultIsWritten) {
  const std::string help = FaultPlan::help();
  EXPECT_THAT(help, HasSubstr("  close@STEP\n"));
  EXPECT_THAT(help, HasSubstr("  wrong-status[@id-response|@burn-reply][=N]\n"));
  EXPECT_THAT(help, HasSubstr("  refuse   (network only)\n"));
  EXPECT_THAT(help, HasSubstr("  unplug@STEP[=N]   (USB only)\n"));
}

}  // namespace
