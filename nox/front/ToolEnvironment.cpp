#include <nox/front/ToolEnvironment.h>

#include <nox/process/ProgramPaths.h>

QString GetPythonExecPath()
{
    return Nox::ProgramPaths::interpreter();
}
