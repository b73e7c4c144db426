// The certificate that the program's own servers may sign themselves.
#pragma once

class QNetworkReply;

namespace net {

/// Excuses, on a reply that is just under way, a server certificate that is self-signed and
/// exactly the one the program was built with. Does nothing where it was built without.
void excusePinnedCertificate(QNetworkReply& reply);

} // namespace net
