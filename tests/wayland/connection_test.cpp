// A connection to a compositor that has, lacks and loses something.

#include <gtest/gtest.h>

#include <stdexcept>

#include "input-method-unstable-v1-client-protocol.h"
#include "input-method-unstable-v2-client-protocol.h"
#include "platform/wayland/client/connection.h"
#include "sway_server.h"

namespace kivra::e2e {
namespace {

using wayland::Connection;

TEST(Connection, TellsWhatTheCompositorOffersAndWhenItIsGone) {
  SwayServer sway;
  sway.enter();
  Connection connection;
  EXPECT_TRUE(connection.offers(zwp_input_method_manager_v2_interface));
  EXPECT_FALSE(connection.offers(zwp_input_method_v1_interface));
  EXPECT_THROW(connection.bind<void>(zwp_input_method_v1_interface), std::runtime_error);
  EXPECT_TRUE(connection.roundtrip());
  sway.kill();
  EXPECT_FALSE(connection.roundtrip());
  EXPECT_FALSE(connection.dispatch());
  EXPECT_THROW(Connection(), std::runtime_error);
}

}  // namespace
}  // namespace kivra::e2e
