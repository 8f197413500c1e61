# orvane_proto: the code generated from src/wire/orvane.proto. It is compiled without warnings and its headers are
# system headers, so that our own units stay quiet. Until the .proto exists the target carries the libraries only.

set(ORVANE_GENERATED "${PROJECT_BINARY_DIR}/generated/wire")
set(orvane_proto_folder "${PROJECT_SOURCE_DIR}/src/wire")
file(GLOB orvane_proto_file CONFIGURE_DEPENDS "${orvane_proto_folder}/orvane.proto")

if(orvane_proto_file)
  file(MAKE_DIRECTORY "${ORVANE_GENERATED}")
  set(orvane_proto_output "${ORVANE_GENERATED}/orvane.pb.cc" "${ORVANE_GENERATED}/orvane.pb.h"
      "${ORVANE_GENERATED}/orvane.grpc.pb.cc" "${ORVANE_GENERATED}/orvane.grpc.pb.h")
  add_custom_command(
    OUTPUT ${orvane_proto_output}
    COMMAND protobuf::protoc "--proto_path=${orvane_proto_folder}" "--cpp_out=${ORVANE_GENERATED}"
            "--grpc_out=${ORVANE_GENERATED}" "--plugin=protoc-gen-grpc=$<TARGET_FILE:gRPC::grpc_cpp_plugin>" orvane.proto
    DEPENDS "${orvane_proto_file}"
    VERBATIM)
  add_library(orvane_proto STATIC ${orvane_proto_output})
  target_include_directories(orvane_proto SYSTEM PUBLIC "${ORVANE_GENERATED}")
  target_compile_options(orvane_proto PRIVATE -w)
  target_link_libraries(orvane_proto PUBLIC gRPC::grpc++ gRPC::grpc++_reflection protobuf::libprotobuf)
else()
  add_library(orvane_proto INTERFACE)
  target_link_libraries(orvane_proto INTERFACE gRPC::grpc++ protobuf::libprotobuf)
endif()

# The generated gRPC header costs three seconds a unit without this.
function(orvane_proto_headers_precompiled name)
  get_target_property(kind orvane_${name} TYPE)
  if(orvane_proto_file AND NOT kind STREQUAL "INTERFACE_LIBRARY")
    target_precompile_headers(orvane_${name} PRIVATE <grpcpp/grpcpp.h> "${ORVANE_GENERATED}/orvane.grpc.pb.h")
  endif()
endfunction()
