#include <tarvik/app/ViewportClient.hpp>

namespace tarvik::app {

ViewportClient::~ViewportClient() = default;

} // namespace tarvik::app
