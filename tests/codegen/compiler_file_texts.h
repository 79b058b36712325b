#pragma once

namespace velmora::test {

// Compiler files as projects of earlier years have them, with plain line ends.

inline constexpr const char* OLD_VCPROJ = R"text(<?xml version="1.0" encoding="Windows-1252"?>
<VisualStudioProject
	ProjectType="Visual C++"
	Version="9,00"
	Name="Echo"
	RootNamespace="Echo"
	>
	<Configurations>
		<Configuration
			Name="Debug|Win32"
			OutputDirectory="$(SolutionDir)$(ConfigurationName)"
			>
			<Tool
				Name="VCCLCompilerTool"
				Optimization="0"
				PreprocessorDefinitions="WIN32;_DEBUG;_WINDOWS"
			/>
			<Tool
				Name="VCLinkerTool"
				OutputFile="C:\Program Files\Old Place\PlugIns\$(ProjectName).dll"
			/>
			<Tool
				Name="VCBscMakeTool"
				OutputFile="$(OutDir)/keep.bsc"
			/>
		</Configuration>
		<Configuration
			Name="Release|Win32"
			>
			<Tool
				Name="VCCLCompilerTool"
				PreprocessorDefinitions="WIN32;NDEBUG"
			/>
			<Tool
				Name="VCLinkerTool"
				AdditionalDependencies="winmm.lib"
				OutputFile="C:\Program Files\Old Place\PlugIns\$(ProjectName).dll"
				ModuleDefinitionFile=""
			/>
		</Configuration>
	</Configurations>
	<Files>
		<Filter
			Name="Source Files"
			>
			<File
				RelativePath=".\Echo.cpp"
				>
			</File>
			<File
				RelativePath="plugin.cpp"
				>
			</File>
		</Filter>
		<Filter
			Name="Header Files"
			>
			<File
				RelativePath=".\Echo.h"
				>
			</File>
			<File
				RelativePath=".\plugin.h"
				>
			</File>
		</Filter>
	</Files>
</VisualStudioProject>
)text";

inline constexpr const char* OLD_VCPROJ_USER = R"text(<?xml version="1.0" encoding="Windows-1252"?>
<VisualStudioUserFile
	Version="9,00"
	>
	<Configurations>
		<Configuration
			Name="Debug|Win32"
			>
			<DebugSettings
				Command="C:\Program Files\Old Place\Velmora.exe"
				WorkingDirectory=""
			/>
		</Configuration>
		<Configuration
			Name="Release|Win32"
			>
			<DebugSettings
				Command="D:\mine.exe"
			/>
		</Configuration>
	</Configurations>
</VisualStudioUserFile>
)text";

inline constexpr const char* OLD_VCXPROJ = R"text(<?xml version="1.0" encoding="utf-8"?>
<Project DefaultTargets="Build" ToolsVersion="4.0" xmlns="http://schemas.microsoft.com/developer/msbuild/2003">
  <PropertyGroup Label="Globals">
    <ProjectGuid>{6F1C0A4E-52D3-4B6E-9C6B-0C6B5B0F2A11}</ProjectGuid>
    <RootNamespace>Echo</RootNamespace>
  </PropertyGroup>
  <PropertyGroup Condition="'$(Configuration)|$(Platform)'=='Debug|Win32'" Label="Configuration">
    <PlatformToolset>v120</PlatformToolset>
  </PropertyGroup>
  <PropertyGroup Condition="'$(Configuration)|$(Platform)'=='Release|Win32'" Label="Configuration">
    <PlatformToolset>v120</PlatformToolset>
  </PropertyGroup>
  <PropertyGroup>
    <OutDir Condition="'$(Configuration)|$(Platform)'=='Debug|Win32'">C:\Old Place\PlugIns\</OutDir>
    <OutDir Condition="'$(Configuration)|$(Platform)'=='Release|Win32'">C:\Old Place\PlugIns\</OutDir>
    <OutDir>C:\Old Place\PlugIns\</OutDir>
  </PropertyGroup>
  <ItemDefinitionGroup Condition="'$(Configuration)|$(Platform)'=='Debug|Win32'">
    <ClCompile>
      <PreprocessorDefinitions>WIN32;_DEBUG;%(PreprocessorDefinitions)</PreprocessorDefinitions>
    </ClCompile>
    <Link>
      <AdditionalDependencies>winmm.lib;%(AdditionalDependencies)</AdditionalDependencies>
      <OutputFile>C:\Old Place\PlugIns\$(ProjectName).dll</OutputFile>
    </Link>
  </ItemDefinitionGroup>
  <ItemDefinitionGroup Condition="'$(Configuration)|$(Platform)'=='Release|Win32'">
    <ClCompile>
      <Optimization>MaxSpeed</Optimization>
    </ClCompile>
    <Link>
      <OutputFile>C:\Old Place\PlugIns\$(ProjectName).dll</OutputFile>
    </Link>
  </ItemDefinitionGroup>
  <ItemGroup>
    <ClCompile Include="Echo.cpp" />
    <ClCompile Include="plugin.cpp">
      <ObjectFileName>$(IntDir)plugin.obj</ObjectFileName>
    </ClCompile>
  </ItemGroup>
  <ItemGroup>
    <ClInclude Include="Echo.h" />
    <ClInclude Include="VelmoraDLL.h" />
    <ClInclude Include="plugin.h" />
  </ItemGroup>
  <Import Project="$(VCTargetsPath)\Microsoft.Cpp.targets" />
</Project>
)text";

inline constexpr const char* OLD_VCXPROJ_USER = R"text(<?xml version="1.0" encoding="utf-8"?>
<Project ToolsVersion="4.0" xmlns="http://schemas.microsoft.com/developer/msbuild/2003">
  <PropertyGroup Condition="'$(Configuration)|$(Platform)'=='Debug|Win32'">
    <LocalDebuggerCommand>C:\Old Place\Velmora.exe</LocalDebuggerCommand>
  </PropertyGroup>
</Project>
)text";

inline constexpr const char* TWO_PROJECT_SOLUTION = R"text(
Microsoft Visual Studio Solution File, Format Version 12.00
# Visual Studio 2012
Project("{8BC9CEB8-8B4A-11D0-8D11-00A0C91BC942}") = "GlobalMixer", "GlobalMixer\GlobalMixer.vcxproj", "{0D0B8B0E-9E29-4A39-8C0F-5E1B7B1D6B01}"
EndProject
Project("{8BC9CEB8-8B4A-11D0-8D11-00A0C91BC942}") = "Gate", "Gate\Gate.vcxproj", "{0D0B8B0E-9E29-4A39-8C0F-5E1B7B1D6B02}"
EndProject
Global
	GlobalSection(SolutionConfigurationPlatforms) = preSolution
		Debug|Win32 = Debug|Win32
	EndGlobalSection
EndGlobal
)text";

} // namespace velmora::test
