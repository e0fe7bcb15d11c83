#include "HTTP/JSONAnswer.h"

namespace stillgate::server
{

Response errorAnswer(int status, std::string_view reason)
{
    return jsonAnswer(std::map<std::string, std::string>{{"error", std::string{reason}}}, status);
}

Response acknowledgement()
{
    return jsonAnswer(std::map<std::string, bool>{{"success", true}});
}

} // namespace stillgate::server
